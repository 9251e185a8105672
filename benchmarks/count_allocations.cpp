#include "count_allocations.h"

#include <atomic>
#include <cstddef>

namespace {
std::atomic<std::size_t> allocations{0};
}

std::size_t allocations_so_far() { return allocations.load(std::memory_order_relaxed); }

// glibc lets a program put its own functions in the place of malloc and realloc; these go on to the
// library's.
extern "C" {

void* __libc_malloc(std::size_t size);                 // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* memory, std::size_t size);  // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(size);
}

void* realloc(void* memory, std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(memory, size);
}
}
