#include "failing_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace gait_test {

thread_local long allocations_left = -1;

}  // namespace gait_test

using gait_test::allocations_left;

// The other forms of new and delete end here too. Not inlined: g++ would warn of memory from `new` that goes to `free`.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (allocations_left == 0) {
    throw std::bad_alloc();
  }
  if (allocations_left > 0) {
    --allocations_left;
  }
  if (void* memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
