// SPDX-License-Identifier: MIT
//
// Each function looks at the return address to learn whether the library called it.
#include "faults/LibraryCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>

#include "simulator/process/Callers.h"
#include "simulator/process/RealFunction.h"
#include "storage/GetAllPartitionInfo.h"

namespace {

struct LibraryCall {
    std::string_view name;
    int made = 0;
    int first = 0;  // the first call that fails; 0: none
    int last = 0;   // the last one
    int error = 0;
};

constexpr std::array<std::string_view, 4> kNames = {"fopen", "fgets", "remove", "_llseek"};
std::array<LibraryCall, 4> calls = {{{kNames[0]}, {kNames[1]}, {kNames[2]}, {kNames[3]}}};
std::size_t deletes = 0;

LibraryCall& Find(std::string_view name) {
    for (LibraryCall& call : calls)
        if (call.name == name) return call;
    throw std::invalid_argument("no library call " + std::string(name));
}

bool IsFromLibrary(const void* caller) {
    return !sim::ObservedCaller(caller).empty();
}

// Counts the call. Returns whether it is to fail, with errno set.
bool Fails(std::string_view name, const void* caller) {
    if (!IsFromLibrary(caller)) return false;
    LibraryCall& call = Find(name);
    ++call.made;
    if (call.made < call.first || call.made > call.last) return false;
    errno = call.error;
    return true;
}

void Release(const char* name, const void* caller, void* memory) {
    if (memory != nullptr && IsFromLibrary(caller)) ++deletes;
    sim::RealFunction<void(void*)>(name)(memory);
}

}  // namespace

namespace faults {

bool IsLibraryCall(std::string_view call) {
    return std::find(kNames.begin(), kNames.end(), call) != kNames.end();
}

void FailLibraryCall(std::string_view name, int nth, int error, sim::Strikes strikes) {
    constexpr int kAll = 1 << 30;
    LibraryCall& call = Find(name);
    call.first = call.made + nth;
    call.last = strikes == sim::Strikes::kOnce ? call.first : kAll;
    call.error = error;
}

void ClearLibraryCalls() {
    for (LibraryCall& call : calls) call = {call.name};
}

std::size_t LibraryCallsOf(std::string_view call) {
    return static_cast<std::size_t>(Find(call).made);
}

std::size_t LibraryDeletes() {
    return deletes;
}

}  // namespace faults

#define CALLER __builtin_return_address(0)

extern "C" {

std::FILE* fopen(const char* path, const char* mode) {
    if (Fails("fopen", CALLER)) return nullptr;
    return sim::RealFunction<std::FILE*(const char*, const char*)>("fopen")(path, mode);
}

char* fgets(char* line, int size, std::FILE* file) {
    if (Fails("fgets", CALLER)) return nullptr;
    return sim::RealFunction<char*(char*, int, std::FILE*)>("fgets")(line, size, file);
}

int remove(const char* path) noexcept {
    if (Fails("remove", CALLER)) return -1;
    return sim::RealFunction<int(const char*)>("remove")(path);
}

}  // extern "C"

int _llseek(unsigned int descriptor, unsigned long high, unsigned long low, long long* position,
            unsigned int origin) {
    if (Fails("_llseek", CALLER)) return -1;
    // The library's own, under its name of the i686 C++ ABI.
    using Function = int(unsigned, unsigned long, unsigned long, long long*, unsigned);
    return sim::RealFunction<Function>("_Z7_llseekjmmPxj")(descriptor, high, low, position, origin);
}

void operator delete(void* memory) noexcept {
    Release("_ZdlPv", CALLER, memory);
}

void operator delete[](void* memory) noexcept {
    Release("_ZdaPv", CALLER, memory);
}

// Compilers want these beside the others; the library uses none of them.
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete[](memory);
}
