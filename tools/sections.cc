#include "sections.h"

#include "kioapp/variables.h"
#include "settings/record.h"

namespace kio::tools {
namespace {

using variables::Variable;

// The text of a row, with its '*' replaced by `word`.
std::string WithWord(platform::TextView row_text, const std::string& word) {
  std::string text = Text(row_text);
  if (const std::size_t star = text.find('*'); star != std::string::npos) {
    text.replace(star, 1, word);
  }
  return text;
}

}  // namespace

std::vector<std::string> WordsOf(const char* const* words) {
  std::vector<std::string> list;
  for (; (*words)[0] != '\0' || (*words)[1] != '_'; ++words) {
    list.emplace_back(*words);
  }
  return list;
}

std::string NamePrefix(SectionId section, int radio) {
  const settings::Section& row = settings::RowOf(section);
  return (settings::IsTopmost(row) ? "rss_" : NamePrefix(row.parent, radio)) +
         WithWord(row.name, std::string(1, settings::kRadioWords[radio][0]));
}

std::string NodePrefix(const SectionInstance& instance) {
  std::string path = settings::SectionPath(instance.section, instance.radio).c_str();
  return path.ends_with(':') ? path + "?\?" : path;
}

std::string ElementPrefix(const SectionInstance& instance) {
  const settings::Section& row = settings::RowOf(instance.section);
  return (row.parent == row.id ? "" : ElementPrefix({row.parent, instance.radio})) +
         WithWord(row.element, settings::kRadioWords[instance.radio]) + "/";
}

std::string FaultPrefix(const SectionInstance& instance) {
  const settings::Section& row = settings::RowOf(instance.section);
  return (row.parent == row.id ? "" : FaultPrefix({row.parent, instance.radio})) +
         WithWord(row.reported.empty() ? row.element : row.reported,
                  settings::kRadioWords[instance.radio]) +
         "/";
}

std::string VariablePath(const Variable& variable, const SectionInstance& instance,
                         bool is_indexed) {
  char buffer[KIOAPP_VAR_SIZE];
  platform::TextBuffer text(buffer);
  variables::AppendPath(text, variable, instance);
  std::string path = text.c_str();
  if (is_indexed) {
    const std::size_t begin = path.find(':') + 1;
    const std::size_t end = path.find('/', begin);
    path.replace(begin, end - begin,
                 "(?"
                 "?+" +
                     path.substr(begin, end - begin) + ")");
  }
  return path;
}

const Variable* VariableOf(SectionId section, const Field& field) {
  for (const Variable& variable : variables::kVariables) {
    if (variable.section() == section && !variable.is_live() && &variable.field() == &field) {
      return &variable;
    }
  }
  return nullptr;
}

const Variable* VariableOf(SectionId section, const LiveNode& live) {
  for (const Variable& variable : variables::kVariables) {
    if (variable.section() == section && variable.is_live() && &variable.live() == &live) {
      return &variable;
    }
  }
  return nullptr;
}

}  // namespace kio::tools
