// The calls into libc that a measurement counts or takes out: this program's own functions stand
// before libc's for all of the program.
#ifndef KIO_TESTS_BUDGET_LIBC_CALLS_H
#define KIO_TESTS_BUDGET_LIBC_CALLS_H

namespace kio::test {

// Calls of malloc, calloc, realloc and the aligned ones since the start of the program.
long HeapCalls();

// Commands given to `system`, none of which is run.
int CommandCount();

// Whether printf-style formatting is libc's; otherwise it writes "text\n" and takes no stack.
void UseLibcFormatting(bool use);

}  // namespace kio::test

#endif
