/* An auditor of the dynamic linker: watches every call of the host into the library. The file that
 * KIO_TEST_ENTRIES names gets a line for the first call, for a call from another thread than that,
 * and for a call within a call. */
#include <fcntl.h>
#include <link.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static uintptr_t g_library;
static long g_thread;
static int g_depth;
static unsigned long g_calls;

static void Note(const char *what, const char *symbol) {
  char line[256];
  const int length = snprintf(line, sizeof line, "%s %s\n", what, symbol);
  const char *const name = getenv("KIO_TEST_ENTRIES");
  const int file = name != NULL ? open(name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600) : -1;
  if (file < 0 || write(file, line, (size_t)length) != length) {
    abort();
  }
  close(file);
}

unsigned int la_version(unsigned int version) {
  return version < LAV_CURRENT ? version : LAV_CURRENT;
}

unsigned int la_objopen(struct link_map *map, Lmid_t name_space, uintptr_t *cookie) {
  (void)name_space;
  const char *const base = strrchr(map->l_name, '/');
  if (base != NULL && strncmp(base, "/libkioapp.so", strlen("/libkioapp.so")) == 0) {
    g_library = *cookie;
    return LA_FLG_BINDTO;
  }
  /* The program itself has no name. */
  return map->l_name[0] == '\0' ? LA_FLG_BINDFROM : 0;
}

Elf64_Addr la_x86_64_gnu_pltenter(Elf64_Sym *symbol, unsigned int index, uintptr_t *from,
                                  uintptr_t *to, La_x86_64_regs *registers, unsigned int *flags,
                                  const char *name, long *frame_size) {
  (void)index;
  (void)from;
  (void)registers;
  (void)flags;
  enum { kStackArguments = 128 };
  if (*to == g_library) {
    const long thread = syscall(SYS_gettid);
    g_thread = g_thread == 0 ? thread : g_thread;
    ++g_calls;
    if (thread != g_thread) {
      Note("another thread:", name);
    } else if (__atomic_add_fetch(&g_depth, 1, __ATOMIC_SEQ_CST) != 1) {
      Note("within a call:", name);
    }
    if (g_calls == 1) {
      Note("first call:", name);
    }
    *frame_size = kStackArguments;
  }
  return symbol->st_value;
}

unsigned int la_x86_64_gnu_pltexit(Elf64_Sym *symbol, unsigned int index, uintptr_t *from,
                                   uintptr_t *to, const La_x86_64_regs *entered,
                                   La_x86_64_retval *result, const char *name) {
  (void)symbol;
  (void)index;
  (void)from;
  (void)entered;
  (void)result;
  (void)name;
  if (*to == g_library && syscall(SYS_gettid) == g_thread) {
    __atomic_sub_fetch(&g_depth, 1, __ATOMIC_SEQ_CST);
  }
  return 0;
}
