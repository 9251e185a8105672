#include "deep_stack.h"

#include <pthread.h>

#include <exception>
#include <system_error>

namespace gait_python {

namespace {

/// A few hundred calls fit the smallest stack that Python gives a thread and can run on.
constexpr std::size_t few_values = 256;
/// A call of the sort takes about a hundred bytes of the stack, more with a sanitizer.
constexpr std::size_t bytes_per_value = 512;
constexpr std::size_t bytes_beside = std::size_t{8} << 20U;

struct task {
  const std::function<void()>& run;
  std::exception_ptr error;
};

extern "C" void* run_task(void* argument) {
  auto* const the_task = static_cast<task*>(argument);
  try {
    the_task->run();
  } catch (...) {
    the_task->error = std::current_exception();
  }
  return nullptr;
}

void require(int error) {
  if (error != 0) {
    throw std::system_error(error, std::generic_category(), "a thread for the statistics");
  }
}

class deep_stack {
public:
  explicit deep_stack(std::size_t bytes) {
    require(pthread_attr_init(&attributes_));
    pthread_attr_setstacksize(&attributes_, bytes);
  }
  ~deep_stack() { pthread_attr_destroy(&attributes_); }
  deep_stack(const deep_stack&) = delete;
  deep_stack(deep_stack&&) = delete;
  deep_stack& operator=(const deep_stack&) = delete;
  deep_stack& operator=(deep_stack&&) = delete;

  const pthread_attr_t* attributes() const { return &attributes_; }

private:
  pthread_attr_t attributes_{};
};

}  // namespace

void on_deep_stack(std::size_t values, const std::function<void()>& run) {
  if (values <= few_values) {
    run();
    return;
  }
  // The pages that are not used take no memory.
  const deep_stack stack(bytes_beside + values * bytes_per_value);
  task the_task{run, nullptr};
  pthread_t thread{};
  require(pthread_create(&thread, stack.attributes(), run_task, &the_task));
  require(pthread_join(thread, nullptr));
  if (the_task.error) {
    std::rethrow_exception(the_task.error);
  }
}

}  // namespace gait_python
