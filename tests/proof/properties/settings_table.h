// The settings that a document, a variable and a node of the store have in common.
#ifndef TESTS_PROOF_PROPERTIES_SETTINGS_TABLE_H
#define TESTS_PROOF_PROPERTIES_SETTINGS_TABLE_H

#include <span>
#include <string>

namespace kio::properties {

enum class Form { kText, kWord, kNumber };

struct Setting {
  const char* node;      // of the store
  const char* variable;  // empty: none that can be set
  const char* block;     // of a document, below the root
  const char* element;
  int capacity;  // characters of a text, as they stand in the document
  Form form;
};

std::span<const Setting> Settings();

// The setting of a node; null for another one. Rules of the access control are not listed.
const Setting* SettingOf(const std::string& node);

}  // namespace kio::properties

#endif  // TESTS_PROOF_PROPERTIES_SETTINGS_TABLE_H
