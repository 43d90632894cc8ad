/* Reads a word at an odd address, which MIPS does not do. That this program dies shows that the
 * emulator would not let the library do it either. */
#include <stdio.h>

int main(int argc, char **argv) {
  (void)argv;
  static const char text[] = "0123456789";
  const volatile int *const word = (const volatile int *)(const void *)(text + argc);
  printf("%d\n", *word);
  return 0;
}
