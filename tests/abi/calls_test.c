/* Calls each exported function through the shared library, from C, and checks what it does. */
#include "calls.h"

#include "expect.h"

int main(void) {
  CheckPlatformCalls();
  CheckTextCalls();
  CheckValidatorCalls();
  CheckXmlCalls();
  CheckStoreCalls();
  CheckExchangeCalls();
  CheckVariableCalls();
  CheckFirmwareCalls();
  CheckAuthCalls();
  return ExpectStatus();
}
