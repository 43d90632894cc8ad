// The codes that the library returns for a variable, a batch or an action, and for a document.
#ifndef HOST_VARIABLE_CODES_H
#define HOST_VARIABLE_CODES_H

namespace kiohost {

struct VariableCode {
  unsigned int code;
  unsigned int http_status;
  const char* reason;
};

// The row of a code; null for a code that the host does not know.
const VariableCode* FindVariableCode(unsigned int code);

// What the code of a result document says.
const char* ResultReason(unsigned int code);

}  // namespace kiohost

#endif  // HOST_VARIABLE_CODES_H
