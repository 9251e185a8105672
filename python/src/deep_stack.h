#ifndef PYTHON_DEEP_STACK_H
#define PYTHON_DEEP_STACK_H

/// \file
/// Computing with a stack that does not depend on the calling thread.

#include <cstddef>
#include <functional>

namespace gait_python {

/// Runs a function whose recursion may be as deep as `values`: the sort of a sample is, on orders
/// made for the purpose. For more than a few, it runs on a thread of its own, whose stack is deep
/// enough, because a thread of Python may have a small one. Throws what the function throws, and
/// std::system_error where no thread can be had.
void on_deep_stack(std::size_t values, const std::function<void()>& run);

}  // namespace gait_python

#endif
