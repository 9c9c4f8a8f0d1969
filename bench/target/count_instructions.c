/* A qemu plugin that counts the guest's instructions between marks. The guest marks a place with
 * write(4095, NULL, label); for each mark a line "label instructions" goes to qemu's log (-D), with
 * the count since the mark before. The distribution ships qemu without its plugin header, so what
 * is used of it (version 1 of the interface) is declared here. */
#include <inttypes.h>
#include <stdio.h>

#define MARK_FILE 4095
#define WRITE_CALL 4 /* on 32-bit ARM */

typedef uint64_t plugin_id;
struct qemu_plugin_tb;
extern void qemu_plugin_register_vcpu_tb_trans_cb(plugin_id,
                                                  void (*)(plugin_id, struct qemu_plugin_tb *));
extern size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *);
extern void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb *, int operation,
                                                     void *counter, uint64_t summand);
extern void qemu_plugin_register_vcpu_syscall_cb(plugin_id,
                                                 void (*)(plugin_id, unsigned, int64_t, uint64_t,
                                                          uint64_t, uint64_t, uint64_t, uint64_t,
                                                          uint64_t, uint64_t, uint64_t));
extern void qemu_plugin_outs(const char *);

int qemu_plugin_version = 1;

static uint64_t executed;
static uint64_t at_last_mark;

/* Every block of instructions adds its length when it runs. */
static void count_block(plugin_id id, struct qemu_plugin_tb *block) {
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(block, 0, &executed, qemu_plugin_tb_n_insns(block));
}

static void watch_call(plugin_id id, unsigned cpu, int64_t call, uint64_t file, uint64_t text,
                       uint64_t label, uint64_t a4, uint64_t a5, uint64_t a6, uint64_t a7,
                       uint64_t a8) {
  char line[64];
  (void)id, (void)cpu, (void)text, (void)a4, (void)a5, (void)a6, (void)a7, (void)a8;
  if (call != WRITE_CALL || file != MARK_FILE) return;
  snprintf(line, sizeof line, "%" PRIu64 " %" PRIu64 "\n", label, executed - at_last_mark);
  qemu_plugin_outs(line);
  at_last_mark = executed;
}

int qemu_plugin_install(plugin_id id, const void *info, int argc, char **argv) {
  (void)info, (void)argc, (void)argv;
  qemu_plugin_register_vcpu_tb_trans_cb(id, count_block);
  qemu_plugin_register_vcpu_syscall_cb(id, watch_call);
  return 0;
}
