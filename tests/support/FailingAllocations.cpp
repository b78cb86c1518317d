#include "tests/support/FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace {

/// How many allocations go well before one fails; below 0: all do.
long g_untilFailure = -1;
bool g_hasFailed = false;

void* allocate(std::size_t size) {
    if (g_untilFailure == 0) {
        g_untilFailure = -1;
        g_hasFailed = true;
        throw std::bad_alloc();
    }
    if (g_untilFailure > 0)
        --g_untilFailure;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
// Who asks without exceptions goes on without the memory, and has nobody to tell: these are always met.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace holdfast {

void failAllocationAfter(long allocations) {
    g_hasFailed = false;
    g_untilFailure = allocations;
}

bool stopFailing() {
    g_untilFailure = -1;
    return g_hasFailed;
}

}  // namespace holdfast
