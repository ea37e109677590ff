// SPDX-License-Identifier: MIT
//
// How the classes of this room, whose members are plain pointers, free their buffers.
#ifndef TALVANE_SMBIOS_FREEBUFFER_H
#define TALVANE_SMBIOS_FREEBUFFER_H

namespace talvane {

// Frees the buffer and nulls the pointer. The store is volatile because destructors use it: agents
// can see the pointer afterwards, but a compiler drops plain stores to an object that ends.
inline void FreeBuffer(unsigned char*& buffer) {
    delete[] buffer;
    unsigned char* volatile& pointer = buffer;
    pointer = nullptr;
}

}  // namespace talvane

#endif
