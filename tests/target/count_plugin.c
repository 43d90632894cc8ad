/* Counts the instructions that an emulated program executes between two marks.
 *
 * A mark is prctl(kMagic, MARK, ...), which changes nothing in the program. kMarkRange gives the
 * addresses of the code whose share is counted apart, kMarkBegin and kMarkEnd enclose what is
 * counted, kMarkReport writes "ALL SHARE" and a line end to the standard output.
 *
 * Blocks are counted as they begin, so the counts of a program that does the same repeat exactly.
 * qemu's header for plugins is in no package; what is needed of it is declared here. */
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "marks.h"

#define EXPORT __attribute__((visibility("default")))

typedef uint64_t PluginId;
struct qemu_plugin_tb;
enum { kInlineAdd = 0 };

typedef void (*TranslationCallback)(PluginId id, struct qemu_plugin_tb *block);
typedef void (*SyscallCallback)(PluginId id, unsigned int cpu, int64_t number, uint64_t a1,
                                uint64_t a2, uint64_t a3, uint64_t a4, uint64_t a5, uint64_t a6,
                                uint64_t a7, uint64_t a8);

/* qemu chose these names. NOLINTBEGIN(readability-identifier-naming) */
void qemu_plugin_register_vcpu_tb_trans_cb(PluginId id, TranslationCallback callback);
void qemu_plugin_register_vcpu_syscall_cb(PluginId id, SyscallCallback callback);
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb *block, int operation,
                                              void *counter, uint64_t amount);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *block);
uint64_t qemu_plugin_tb_vaddr(const struct qemu_plugin_tb *block);

extern EXPORT int qemu_plugin_version;
int qemu_plugin_version = 1;
EXPORT int qemu_plugin_install(PluginId id, const void *info, int argc, char **argv);
/* NOLINTEND(readability-identifier-naming) */

static uint64_t g_all = 0;
static uint64_t g_share = 0;
static uint64_t g_begin_all = 0;
static uint64_t g_begin_share = 0;
static uint64_t g_first = 0;
static uint64_t g_last = 0;

static void CountBlock(PluginId id, struct qemu_plugin_tb *block) {
  (void)id;
  const uint64_t address = qemu_plugin_tb_vaddr(block);
  const size_t instructions = qemu_plugin_tb_n_insns(block);
  qemu_plugin_register_vcpu_tb_exec_inline(block, kInlineAdd, &g_all, instructions);
  if (address >= g_first && address < g_last) {
    qemu_plugin_register_vcpu_tb_exec_inline(block, kInlineAdd, &g_share, instructions);
  }
}

static void TakeMark(PluginId id, unsigned int cpu, int64_t number, uint64_t a1, uint64_t a2,
                     uint64_t a3, uint64_t a4, uint64_t a5, uint64_t a6, uint64_t a7, uint64_t a8) {
  (void)id, (void)cpu, (void)a5, (void)a6, (void)a7, (void)a8;
  if (number != kPrctlNumber || (uint32_t)a1 != kMagic) {
    return;
  }
  static uint64_t all = 0;
  static uint64_t share = 0;
  switch (a2) {
    case kMarkRange:
      g_first = (uint32_t)a3;
      g_last = (uint32_t)a4;
      break;
    case kMarkBegin:
      g_begin_all = g_all;
      g_begin_share = g_share;
      break;
    case kMarkEnd:
      all = g_all - g_begin_all;
      share = g_share - g_begin_share;
      break;
    default:
      printf("%llu %llu\n", (unsigned long long)all, (unsigned long long)share);
      fflush(stdout);
      break;
  }
}

/* NOLINTNEXTLINE(readability-identifier-naming) */
int qemu_plugin_install(PluginId id, const void *info, int argc, char **argv) {
  (void)info, (void)argc, (void)argv;
  qemu_plugin_register_vcpu_tb_trans_cb(id, CountBlock);
  qemu_plugin_register_vcpu_syscall_cb(id, TakeMark);
  return 0;
}
