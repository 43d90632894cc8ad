// Calls into libc that a measurement counts or leaves out: functions of this program replace those
// of libc, for the library too.
#ifndef KIO_TESTS_BUDGET_LIBC_CALLS_H
#define KIO_TESTS_BUDGET_LIBC_CALLS_H

namespace kio::test {

// Calls of malloc, calloc, realloc and the aligned ones since the start of the program.
long HeapCalls();

// Commands given to `system`, none of which is run.
int CommandCount();

// Whether vsnprintf and its like are libc's. Otherwise they write "text\n" and take no stack.
void UseLibcFormatting(bool use);

}  // namespace kio::test

#endif
