/* The marks that a measured program gives to count_plugin.c. */
#ifndef KIO_TESTS_TARGET_MARKS_H
#define KIO_TESTS_TARGET_MARKS_H

enum {
  kPrctlNumber = 4192, /* of the system call, on 32-bit MIPS */
  kMagic = 0x4B494F00,
  kMarkRange = 1,
  kMarkBegin = 2,
  kMarkEnd = 3,
  kMarkReport = 4
};

#endif
