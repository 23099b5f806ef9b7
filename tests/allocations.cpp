#include "tests/allocations.h"

#include <cstdlib>

long allocations::made = 0;
long allocations::live = 0;
long allocations::untilFailure = 0;

namespace {

void* allocate(std::size_t size) {
    using namespace allocations;
    if (untilFailure > 0 && --untilFailure == 0) {
        throw std::bad_alloc();
    }
    void* memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++made;
    ++live;
    return memory;
}

void release(void* memory) {
    allocations::live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { release(memory); }
