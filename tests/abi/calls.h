/* The groups of checks of calls_test.c. */
#ifndef KIO_TESTS_ABI_CALLS_H
#define KIO_TESTS_ABI_CALLS_H

void CheckTextCalls(void);
void CheckValidatorCalls(void);
void CheckXmlCalls(void);
void CheckStoreCalls(void);
void CheckPlatformCalls(void);
void CheckExchangeCalls(void);
void CheckVariableCalls(void);
void CheckFirmwareCalls(void);
void CheckAuthCalls(void);

#endif
