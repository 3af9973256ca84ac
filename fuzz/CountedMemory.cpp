#include "CountedMemory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

int64_t LiveBytes = 0, PeakBytes = 0;

void* TryAllocate(size_t size) noexcept {
    void* const block = std::malloc(size);
    if (block) LiveBytes += static_cast<int64_t>(malloc_usable_size(block));
    PeakBytes = std::max(PeakBytes, LiveBytes);
    return block;
}

void* Allocate(size_t size) {
    void* const block = TryAllocate(size);
    if (!block) throw std::bad_alloc();
    return block;
}

void Free(void* block) {
    if (block) LiveBytes -= static_cast<int64_t>(malloc_usable_size(block));
    std::free(block);
}

}  // namespace

void* operator new(size_t size) {
    return Allocate(size);
}
void* operator new[](size_t size) {
    return Allocate(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void operator delete(void* block) noexcept {
    Free(block);
}
void operator delete[](void* block) noexcept {
    Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    Free(block);
}
void operator delete(void* block, size_t) noexcept {
    Free(block);
}
void operator delete[](void* block, size_t) noexcept {
    Free(block);
}

namespace sorbel::fuzz::CountedMemory {

int64_t StartPeak() {
    return PeakBytes = LiveBytes;
}

int64_t Peak() {
    return PeakBytes;
}

}  // namespace sorbel::fuzz::CountedMemory
