/* Calls each exported function through the shared library, from C, and checks what it does. */
#include "calls.h"

#include <kioapp/features.h>

#include "expect.h"

int main(void) {
  CheckPlatformCalls();
  CheckTextCalls();
  CheckValidatorCalls();
  CheckXmlCalls();
  CheckStoreCalls();
  CheckExchangeCalls();
#if KIOAPP_HAS_VARIABLES
  CheckVariableCalls();
#endif
#if KIOAPP_HAS_FIRMWARE
  CheckFirmwareCalls();
#endif
#if KIOAPP_HAS_AUTH
  CheckAuthCalls();
#endif
  return ExpectStatus();
}
