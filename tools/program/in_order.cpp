#include "in_order.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>

namespace gait_program {
namespace {

bool is_to_be_had(std::size_t bytes) {
  void* const memory =
      ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    return false;
  }
  ::munmap(memory, bytes);
  return true;
}

}  // namespace

std::size_t stack_of_each(std::size_t threads) {
  constexpr std::size_t most = std::size_t{1} << 30U;
  constexpr std::size_t least = std::size_t{8} << 20U;
  rlimit limit{};
  const bool is_known = ::getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
  std::size_t size = is_known ? std::clamp<std::size_t>(limit.rlim_cur, least, most) : most;
  while (size > least && !is_to_be_had(threads * size)) {
    size = std::max(size / 2, least);
  }
  return size;
}

}  // namespace gait_program
