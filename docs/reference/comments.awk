# comments.awk HEADER: prints a public header with its comments in the form that doxygen reads. The
# headers themselves are for people: their comments have no marks.
#
# A comment on the line before a declaration, or behind a member, is about that. The first one of a
# header, and one with an empty line below, is about the header. One before a condition is about the
# lines in between, and stays as it is, like those for clang-tidy.

# What means something to doxygen gets a backslash, but for code, in backquotes or further in, and what
# is quoted: doxygen takes that as it is.
function escaped(text,    out, c, i) {
  if (text ~ /^ ?\*?     /) {
    return text
  }
  out = ""
  for (i = 1; i <= length(text); ++i) {
    c = substr(text, i, 1)
    if (c == quote) {
      quote = ""
    } else if (quote == "" && (c == "`" || c == "\"")) {
      quote = c
    } else if (quote == "" && index("\\<>@#%&", c)) {
      out = out "\\"
    }
    out = out c
  }
  return out
}

# Prints the comment in `lines`, which begins with `opening` in the place of its two characters.
function print_comment(opening, closing,    i, line) {
  quote = ""
  for (i = 1; i <= count; ++i) {
    line = lines[i]
    if (i == 1) {
      match(line, /^ *\/\*/)
      printf "%s%s", substr(line, 1, RLENGTH - 2), opening
      line = substr(line, RLENGTH + 1)
    }
    if (i < count) {
      print escaped(line)
    } else {
      sub(/ *\*\/$/, "", line)
      print escaped(line) " */" closing
    }
  }
  count = 0
}

# The comment that has been read, now that the line below it is known.
function flush(below,    i) {
  if (!count) {
    return
  }
  if (lines[1] ~ /NOLINT/ || (below ~ /^#if / && !is_first)) {
    for (i = 1; i <= count; ++i) {
      print lines[i]
    }
    count = 0
  } else if (is_first || below ~ /^ *$/) {
    print_comment("/** @file\n *", "")
  } else {
    print_comment("/**", "")
  }
  is_first = 0
}

BEGIN {
  is_first = 1
}
in_comment {
  lines[++count] = $0
  in_comment = $0 !~ /\*\/$/
  next
}
{
  flush($0)
}
/^ *\/\*/ {
  count = 1
  lines[1] = $0
  in_comment = $0 !~ /\*\/$/
  next
}
# Behind a member.
/[,;{0-9] +\/\*.*\*\/$/ && !/^#/ {
  match($0, / +\/\*.*$/)
  comment = substr($0, RSTART)
  printf "%s", substr($0, 1, RSTART - 1)
  count = 1
  lines[1] = comment
  print_comment("/**<", "")
  next
}
{
  print
}
END {
  flush("")
}
