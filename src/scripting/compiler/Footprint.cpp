#include "scripting/compiler/Footprint.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "scripting/compiler/Blocks.h"

namespace sorbel::script {

namespace {

/// What of the process lies in memory; 0 where that cannot be told, or tells more of a sanitizer than of a
/// script.
size_t ResidentBytes() {
#ifdef SORBEL_ADDRESS_SANITIZER
    return 0;
#else
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen("/proc/self/statm", "r"), std::fclose);
    unsigned long size = 0, resident = 0;
    if (!file || std::fscanf(file.get(), "%lu %lu", &size, &resident) != 2) return 0;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
#endif
}

}  // namespace

Footprint::Footprint(size_t source)
    : mMost(ResidentBytes() + Limit + Overhead - std::min(source, Limit)), mKept(source) {}

bool Footprint::HasRoom(size_t bytes) {
    mUnseen = 0;
    if (ResidentBytes() + bytes <= mMost) return true;
#ifdef __GLIBC__
    malloc_trim(0);  // what was freed may still be counted
#endif
    return ResidentBytes() + bytes <= mMost;
}

void Footprint::Need(size_t bytes, uint32_t line) {
    mLine = line;
    if (!MayGrow(bytes)) throw std::bad_alloc();
}

void Footprint::Keep(size_t bytes, uint32_t line) {
    mLine = line;
    if (mKept > Limit || bytes > Limit - mKept) throw std::bad_alloc();
    Need(bytes, line);
    mKept += bytes;
}

}  // namespace sorbel::script
