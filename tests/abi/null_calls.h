/* Calls of the exported functions with null pointers: what null_test.c and the rows of null_rows.c
 * share. */
#ifndef KIO_TESTS_ABI_NULL_CALLS_H
#define KIO_TESTS_ABI_NULL_CALLS_H

enum { kMostPointers = 5 };

/* A function and how to call it. */
struct NullRow {
  const char *name;
  /* A letter for each of its pointers: 't' a text that is read, 'i' one that is changed in place
   * and returned, 'w' what is written to, 'o' anything else. */
  const char *pointers;
  void (*call)(void); /* null for a function without a pointer */
};

/* All of them; the last has no name. */
extern const struct NullRow kNullRows[];

/* What a row gives its function as pointer number `index`: a text, or what the present case has
 * instead. */
char *Text(int index, const char *text);

/* The same for a buffer of 4096 zeros. */
void *Buffer(int index);

/* The same for a pointer to something else. */
void *Other(int index, void *object);

/* What the function returned. */
void ReturnedNumber(long number);
void ReturnedText(const char *text);
void ReturnedNothing(void);

#endif
