#include "utf8.h"

namespace gait_walk {

bool utf8_check::accept(unsigned char byte) {
  if (missing_ == 0) {
    return begin(byte);
  }
  // Only the first continuation byte has narrower bounds.
  return byte >= lowest_ && byte <= highest_ && expect(missing_ - 1, 0x80, 0xBF);
}

bool utf8_check::begin(unsigned char byte) {
  if (byte < 0x80) {
    return true;
  }
  if (byte < 0xC2 || byte > 0xF4) {
    return false;
  }
  if (byte < 0xE0) {
    return expect(1, 0x80, 0xBF);
  }
  if (byte < 0xF0) {
    return expect(2, byte == 0xE0 ? 0xA0 : 0x80, byte == 0xED ? 0x9F : 0xBF);
  }
  return expect(3, byte == 0xF0 ? 0x90 : 0x80, byte == 0xF4 ? 0x8F : 0xBF);
}

bool utf8_check::expect(int continuations, unsigned char lowest, unsigned char highest) {
  missing_ = continuations;
  lowest_ = lowest;
  highest_ = highest;
  return true;
}

}  // namespace gait_walk
