# from_markdown.awk -v name=NAME PAGE.md: makes the scdoc source of the manual page NAME(7) from a page
# of docs/, on standard output. A row of a table becomes an entry: the first cell with the others
# below, since rows of eight cells are too wide for a terminal. The first paragraph of a page, which
# tells how it is made, is left out.

# The text of a line of Markdown: code and stress in bold, links by their text, all else as it is.
function inline(text,    out, c, rest, is_bold) {
  out = ""
  is_bold = 0
  while (text != "") {
    c = substr(text, 1, 1)
    if (c == "`" && match(substr(text, 2), /`/)) {
      out = out bold(substr(text, 2, RSTART - 1), is_bold)
      text = substr(text, RSTART + 2)
    } else if (substr(text, 1, 2) == "**") {
      is_bold = !is_bold
      out = out "*"
      text = substr(text, 3)
    } else if (match(text, /^\[[^]]*\]\([^)]*\)/)) {
      rest = substr(text, RLENGTH + 1)
      match(text, /^\[[^]]*\]/)
      out = out inline(substr(text, 2, RLENGTH - 2))
      text = rest
    } else {
      out = out plain(c)
      text = substr(text, 2)
    }
  }
  return out
}

# Code within stress goes on in bold.
function bold(text, is_bold) {
  return is_bold ? plain(text) : "*" plain(text) "*"
}

# Characters that mean something to scdoc anywhere get a backslash.
function plain(text) {
  gsub(/[\\*_#+]/, "\\\\&", text)
  return text
}

function trimmed(text) {
  gsub(/^[ \t]+|[ \t]+$/, "", text)
  return text
}

# Splits the row of a table into `cells`; returns their number.
function split_row(line, cells,    count, i) {
  line = trimmed(line)
  gsub(/^\||\|$/, "", line)
  count = split(line, cells, "|")
  for (i = 1; i <= count; ++i) {
    cells[i] = trimmed(cells[i])
  }
  return count
}

function print_row(line,    cells, count, i, entry) {
  count = split_row(line, cells)
  print inline(cells[1])
  entry = ""
  for (i = 2; i <= count; ++i) {
    if (cells[i] != "") {
      # Each cell begins a line, and only the first one of them with a tab.
      entry = entry (entry == "" ? "\t" : "++\n") \
        (header_count > 2 ? "_" plain(header[i]) "_: " : "") inline(cells[i])
    }
  }
  print entry
  print ""
}

# Prints the paragraph or the item that has been read.
function flush() {
  if (text != "" && !is_preface) {
    # Some mean something at the beginning of a line.
    print mark (text ~ /^[-.[|;]/ ? "\\" : "") inline(text)
    print ""
  }
  if (text != "") {
    is_preface = 0
  }
  text = ""
  mark = ""
}

function section(title) {
  return toupper(plain(title))
}

BEGIN {
  if (name == "") {
    print "usage: awk -v name=NAME -f from_markdown.awk PAGE.md" > "/dev/stderr"
    exit 2
  }
}

# A block of code, with or without a language.
/^```/ {
  flush()
  print "```"
  in_code = !in_code
  if (!in_code) {
    print ""
  }
  next
}
in_code {
  print
  next
}
/^# / {
  print name "(7)"
  print ""
  print "# NAME"
  print ""
  sub(/^# (The )?/, "")
  print plain(name) " - " plain($0) " of libkioapp"
  print ""
  print "# DESCRIPTION"
  print ""
  is_preface = 1
  next
}
/^## / {
  flush()
  print "# " section(substr($0, 4))
  print ""
  next
}
/^### / {
  flush()
  print "## " plain(substr($0, 5))
  print ""
  next
}
/^\|[ :-]*-[-| :]*\|$/ {
  next
}
/^\|/ {
  flush()
  if (!in_table) {
    header_count = split_row($0, header)
    in_table = 1
  } else {
    print_row($0)
  }
  next
}
{
  in_table = 0
}
/^ *$/ {
  flush()
  next
}
/^- / {
  flush()
  mark = "- "
  text = substr($0, 3)
  next
}
{
  text = text (text == "" ? "" : " ") trimmed($0)
}
END {
  if (name == "") {
    exit 2
  }
  flush()
  if (in_code) {
    print "a block of code has no end" > "/dev/stderr"
    exit 1
  }
  print "# SEE ALSO"
  print ""
  print "*kioapp*(3), *kiohost*(1), *kioapp-store*(7), *kioapp-documents*(7)"
}
