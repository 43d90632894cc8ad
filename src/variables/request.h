// A request for a variable, and where the variable stands in the store and in the record.
#ifndef KIO_VARIABLES_REQUEST_H
#define KIO_VARIABLES_REQUEST_H

#include "kioapp/record.h"
#include "kioapp/variables.h"
#include "platform/text.h"
#include "variables/table.h"

namespace kio::variables {

using settings::SectionInstance;

// The caller's value buffer, and what is to be done.
struct Request {
  char* value;
  int mode;

  [[nodiscard]] bool reads() const { return (mode & KIOAPP_VAR_READ) != 0; }
  [[nodiscard]] bool reads_path() const { return (mode & KIOAPP_VAR_PATH) != 0; }
  [[nodiscard]] bool writes() const { return (mode & KIOAPP_VAR_WRITE) != 0; }
  [[nodiscard]] bool checks() const {
    return (mode & (KIOAPP_VAR_WRITE | KIOAPP_VAR_VALIDATE)) != 0;
  }

  void Answer(TextView text) const { platform::CopyText(value, KIOAPP_VAR_SIZE, text); }
  void AnswerNumber(int number) const {
    platform::TextBuffer(value, KIOAPP_VAR_SIZE).AppendNumber(number);
  }
};

// Appends the store path that a read with KIOAPP_VAR_PATH gives.
void AppendPath(platform::TextBuffer& path, const Variable& variable,
                const SectionInstance& instance);

// The structure that holds the variable's field.
void* StructureOfVariable(const Variable& variable, const SectionInstance& instance);

}  // namespace kio::variables

#endif
