/* The data of the host in namesake_host.c that have the names of the library's data. */
#ifndef KIO_TESTS_ABI_NAMESAKES_H
#define KIO_TESTS_ABI_NAMESAKES_H

/* Whether one of them has changed since the program began, and which. */
const char *ChangedNamesake(void);

#endif
