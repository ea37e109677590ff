// SPDX-License-Identifier: MIT
//
// The least that a process can do: what an agent that only starts and ends is held against.

int main(void) {
    return 0;
}
