/* zlib_host kioapp|zlib: a host that uses zlib as well. Both have a function crc32; the argument
 * says whose every other library gets, which is that of the library that is linked first. zlib and
 * the check of an image work with either; the answer to a null pointer tells the two apart. */
#define KIOAPP_NO_SHORT_NAMES
#include <kioapp/kioapp.h>
#include <stdio.h>
#include <string.h>
#include <zlib.h>

#include "expect.h"
#include "testing/scratch.h"

/* short_names.h declares it beside another crc32. */
int check(const char *path, unsigned int offset, unsigned int length, char *message);

static unsigned char g_plain[100000];
static unsigned char g_packed[120000];
static unsigned char g_unpacked[100000];

static void CheckStreams(void) {
  uLongf packed_size = sizeof(g_packed);
  uLongf size = sizeof(g_unpacked);
  EXPECT_INT(compress(g_packed, &packed_size, g_plain, sizeof(g_plain)), Z_OK);
  EXPECT_INT(uncompress(g_unpacked, &size, g_packed, packed_size), Z_OK);
  EXPECT_INT(size == sizeof(g_plain) && memcmp(g_plain, g_unpacked, size) == 0, 1);
}

/* The trailer of such a file is a CRC-32, which zlib computes when it writes and when it reads. */
static void CheckGzipFile(void) {
  memset(g_unpacked, 0, sizeof(g_unpacked));
  gzFile file = gzopen(ScratchPath("plain.gz"), "wb");
  EXPECT_INT(gzwrite(file, g_plain, sizeof(g_plain)), sizeof(g_plain));
  EXPECT_INT(gzclose(file), Z_OK);
  file = gzopen(ScratchPath("plain.gz"), "rb");
  EXPECT_INT(gzread(file, g_unpacked, sizeof(g_unpacked)), sizeof(g_unpacked));
  EXPECT_INT(gzclose(file), Z_OK);
  EXPECT_INT(memcmp(g_plain, g_unpacked, sizeof(g_plain)), 0);

  /* A byte of the trailer is changed: that is found. */
  FILE *const raw = fopen(ScratchPath("plain.gz"), "r+b");
  EXPECT_INT(fseek(raw, -8, SEEK_END), 0);
  const int byte = fgetc(raw);
  EXPECT_INT(fseek(raw, -8, SEEK_END), 0);
  fputc(byte ^ 1, raw);
  fclose(raw);
  file = gzopen(ScratchPath("plain.gz"), "rb");
  const int count = gzread(file, g_unpacked, sizeof(g_unpacked));
  const int closed = gzclose(file);
  EXPECT_INT(count < 0 || closed != Z_OK, 1);
}

static void PutNumber(unsigned char *bytes, unsigned long number) {
  bytes[0] = (unsigned char)(number >> 24);
  bytes[1] = (unsigned char)(number >> 16);
  bytes[2] = (unsigned char)(number >> 8);
  bytes[3] = (unsigned char)number;
}

static void CheckImage(void) {
  unsigned char image[64 + 9] = {0};
  char message[512];
  for (int i = 0; i < 9; ++i) {
    image[64 + i] = (unsigned char)('1' + i);
  }
  PutNumber(image, 0x27051956);
  PutNumber(image + 24, crc32(0, image + 64, 9));
  PutNumber(image + 4, crc32(0, image, 64));
  FILE *const file = fopen(ScratchPath("image"), "wb");
  fwrite(image, 1, sizeof(image), file);
  fclose(file);
  EXPECT_INT(check(ScratchPath("image"), 0, sizeof(image), message), 1);
}

int main(int argc, char **argv) {
  for (size_t i = 0; i < sizeof(g_plain); ++i) {
    g_plain[i] = (unsigned char)(i * i >> 7);
  }
  EXPECT_INT(crc32(0, (const unsigned char *)"123456789", 9) == 0xCBF43926UL, 1);
  EXPECT_INT(crc32(5, NULL, 0), argc > 1 && strcmp(argv[1], "kioapp") == 0 ? 5 : 0);
  CheckStreams();
  CheckGzipFile();
  CheckImage();
  return ExpectStatus();
}
