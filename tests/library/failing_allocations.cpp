#include "failing_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace gait_test {

thread_local long allocations_left = -1;
thread_local bool memory_stays_short = true;
thread_local long allocations_tried = 0;
thread_local long allocations_failed = 0;
thread_local long live_allocations = 0;

namespace {

/// Whether the allocation that is asked for now is to fail.
bool fails() {
  ++allocations_tried;
  if (allocations_left == 0) {
    ++allocations_failed;
    if (!memory_stays_short) {
      allocations_left = -1;
    }
    return true;
  }
  if (allocations_left > 0) {
    --allocations_left;
  }
  return false;
}

void* counted(void* memory) {
  live_allocations += memory != nullptr ? 1 : 0;
  return memory;
}

}  // namespace
}  // namespace gait_test

// The linker turns the calls of malloc into calls of __wrap_malloc, those of __real_malloc into
// calls of malloc, and so on (its option --wrap). A malloc of this program's own would take the
// place of the one that a sanitizer or valgrind brings, and with it all that they find.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void* __real_aligned_alloc(std::size_t alignment, std::size_t size);
void __real_free(void* memory);

void* __wrap_malloc(std::size_t size) {
  return gait_test::fails() ? nullptr : gait_test::counted(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return gait_test::fails() ? nullptr : gait_test::counted(__real_calloc(count, size));
}

void* __wrap_realloc(void* memory, std::size_t size) {
  if (gait_test::fails()) {
    return nullptr;
  }
  void* const moved = __real_realloc(memory, size);
  // The old block is gone, unless there was no memory for the new one; with a size of 0 it is gone
  // without a new one.
  if (memory != nullptr && (moved != nullptr || size == 0)) {
    --gait_test::live_allocations;
  }
  return gait_test::counted(moved);
}

void* __wrap_aligned_alloc(std::size_t alignment, std::size_t size) {
  return gait_test::fails() ? nullptr : gait_test::counted(__real_aligned_alloc(alignment, size));
}

void __wrap_free(void* memory) {
  gait_test::live_allocations -= memory != nullptr ? 1 : 0;
  __real_free(memory);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

void* or_bad_alloc(void* memory) {
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void* aligned(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

}  // namespace

// Every form, because a sanitizer's own of a form that is left out would go past malloc. Not
// inlined: g++ would warn of memory from `new` that goes to `free`.
// NOLINTBEGIN(misc-new-delete-overloads)
#define OPERATOR_NEW(throws, result, ...)                                       \
  [[gnu::noinline]] void* operator new(__VA_ARGS__) throws { return (result); } \
  [[gnu::noinline]] void* operator new[](__VA_ARGS__) throws { return (result); }
#define OPERATOR_DELETE(...)                                                          \
  [[gnu::noinline]] void operator delete(__VA_ARGS__) noexcept { std::free(memory); } \
  [[gnu::noinline]] void operator delete[](__VA_ARGS__) noexcept { std::free(memory); }

OPERATOR_NEW(noexcept(false), or_bad_alloc(std::malloc(size)), std::size_t size)
OPERATOR_NEW(noexcept, std::malloc(size), std::size_t size, const std::nothrow_t&)
OPERATOR_NEW(noexcept(false), or_bad_alloc(aligned(size, to)), std::size_t size,
             std::align_val_t to)
OPERATOR_NEW(noexcept, aligned(size, to), std::size_t size, std::align_val_t to,
             const std::nothrow_t&)
OPERATOR_DELETE(void* memory)
OPERATOR_DELETE(void* memory, std::size_t)
OPERATOR_DELETE(void* memory, const std::nothrow_t&)
OPERATOR_DELETE(void* memory, std::align_val_t)
OPERATOR_DELETE(void* memory, std::size_t, std::align_val_t)
OPERATOR_DELETE(void* memory, std::align_val_t, const std::nothrow_t&)
#undef OPERATOR_NEW
#undef OPERATOR_DELETE
// NOLINTEND(misc-new-delete-overloads)
