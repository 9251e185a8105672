#ifndef FUZZ_CHECK_H
#define FUZZ_CHECK_H

/// \file
/// What a fuzz target says when something does not hold.

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Ends the process in a way that the fuzzer keeps the input and that fails the replay.
[[noreturn]] inline void fail(const std::string& what) {
  std::fprintf(stderr, "does not hold: %s\n", what.c_str());
  std::abort();
}

inline void check(bool holds, const char* what) {
  if (!holds) {
    fail(what);
  }
}

}  // namespace fuzz

#endif
