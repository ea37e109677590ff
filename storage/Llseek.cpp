// SPDX-License-Identifier: MIT
//
// The 64-bit seek. Without it a program whose off_t has 32 bits reaches only 2 GiB of a disk.

#include <sys/syscall.h>
#include <unistd.h>

#include "storage/GetAllPartitionInfo.h"

int _llseek(unsigned int fd, unsigned long offset_high, unsigned long offset_low, long long* result,
            unsigned int whence) {
    return static_cast<int>(syscall(SYS__llseek, fd, offset_high, offset_low, result, whence));
}
