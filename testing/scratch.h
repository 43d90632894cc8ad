/* A temporary directory for programs in C. */
#ifndef KIO_TESTING_SCRATCH_H
#define KIO_TESTING_SCRATCH_H

/* The directory, made at the first call and removed at exit with the files in it. */
const char *ScratchDirectory(void);

/* The path of a file in it, in a buffer that the next call overwrites. */
const char *ScratchPath(const char *name);

/* The contents of that file, in a buffer that the next call overwrites; null when it cannot be
 * read. */
const char *ScratchText(const char *name);

#endif
