/* Checks for the test programs in C. A failed one is printed and counted; the program goes on. */
#ifndef KIO_TESTS_ABI_EXPECT_H
#define KIO_TESTS_ABI_EXPECT_H

#define EXPECT_INT(actual, expected) \
  ExpectInt(__FILE__, __LINE__, #actual, (long)(actual), (long)(expected))
#define EXPECT_TEXT(actual, expected) ExpectText(__FILE__, __LINE__, #actual, actual, expected)

void ExpectInt(const char *file, int line, const char *what, long actual, long expected);
/* Either text may be null. */
void ExpectText(const char *file, int line, const char *what, const char *actual,
                const char *expected);

/* Prints how many checks ran and failed. Returns the exit status of the program: 0 when some ran
 * and all held. */
int ExpectStatus(void);

#endif
