// SPDX-License-Identifier: MIT
//
// Included before every source of the library. The compiler refers by itself to these parts of the
// C++ runtime library: how exceptions pass through a function, and what dynamic_cast asks of a
// type. As weak references they are bound in a program that has that library, of whatever version,
// and null in a C program. There nobody uses them: nothing throws, and no class is cast. Without
// optimisation a list also refers to the exception for too many elements, which one element at a
// time never are; a strong reference would bring in a second copy of the exception handling.
#ifndef TALVANE_BASE_RUNTIMEREFERENCES_H
#define TALVANE_BASE_RUNTIMEREFERENCES_H

asm(".weak __gxx_personality_v0\n"
    ".weak _Unwind_Resume\n"
    ".weak _ZSt7nothrow\n"
    ".weak _ZSt17__throw_bad_allocv\n"
    ".weak _ZSt28__throw_bad_array_new_lengthv\n"
    ".weak _ZTVN10__cxxabiv117__class_type_infoE\n"       // vtable of the type of a class
    ".weak _ZTVN10__cxxabiv120__si_class_type_infoE\n");  // ... with one base class

// What clang lets a function call that must not throw and does.
#ifdef __clang__
asm(".weak __cxa_begin_catch\n"
    ".weak _ZSt9terminatev\n");
#endif

#endif
