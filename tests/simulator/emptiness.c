// SPDX-License-Identifier: MIT
//
// A program that sleeps for no time at all, which takes none on a real machine either.
#include <stdio.h>
#include <unistd.h>

int main(void) {
    return sleep(0) == 0 && puts("no machine path was touched") > 0 ? 0 : 1;
}
