// SPDX-License-Identifier: MIT
//
// A plugin of QEMU's user emulation that counts the instructions of a program and appends the
// number as a line to the file that BENCH_INSTRUCTIONS names. QEMU comes without its header in
// Debian; the declarations are those of its plugin interface, version 1.
#include <inttypes.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

typedef uint64_t qemu_plugin_id_t;
typedef struct qemu_info_t qemu_info_t;
struct qemu_plugin_tb;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };
typedef void (*qemu_plugin_vcpu_tb_trans_cb_t)(qemu_plugin_id_t, struct qemu_plugin_tb*);
typedef void (*qemu_plugin_udata_cb_t)(qemu_plugin_id_t, void*);
void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t, qemu_plugin_vcpu_tb_trans_cb_t);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb*);
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb*, enum qemu_plugin_op, void*,
                                              uint64_t);
void qemu_plugin_register_atexit_cb(qemu_plugin_id_t, qemu_plugin_udata_cb_t, void*);

#define EXPORTED __attribute__((visibility("default")))

EXPORTED int qemu_plugin_version = 1;

static uint64_t instructions;

static void CountBlock(qemu_plugin_id_t id, struct qemu_plugin_tb* block) {
    (void)id;
    qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &instructions,
                                             qemu_plugin_tb_n_insns(block));
}

static void WriteCount(qemu_plugin_id_t id, void* data) {
    (void)id;
    (void)data;
    const char* const path = getenv("BENCH_INSTRUCTIONS");
    FILE* const file = path == NULL ? NULL : fopen(path, "a");
    if (file == NULL) abort();
    fprintf(file, "%" PRIu64 "\n", instructions);
    fclose(file);
}

EXPORTED int qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t* info, int argc,
                                 char** argv) {
    (void)info;
    (void)argc;
    (void)argv;
    qemu_plugin_register_vcpu_tb_trans_cb(id, CountBlock);
    qemu_plugin_register_atexit_cb(id, WriteCount, NULL);
    return 0;
}
