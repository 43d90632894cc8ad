/* Stands in for the host when the build proves that the library needs nothing else but libc. */
#include "kioapp/store.h"

int xget_str(char *dst, const char *format, ...) {
  dst[0] = '\0';
  return (int)format[0];
}

int xset_str(const char *value, const char *format, ...) { return value[0] + format[0]; }

int xget_int(const char *format, ...) { return -(int)format[0]; }

int xset_int(int value, const char *format, ...) { return value + format[0]; }

int xdel(const char *format, ...) { return (int)format[0]; }
