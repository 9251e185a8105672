#ifndef TOOLS_WALK_FOLDER_UTF8_H
#define TOOLS_WALK_FOLDER_UTF8_H

/// \file
/// Whether bytes are UTF-8, seen one at a time.

namespace gait_walk {

/// Checks a text whose bytes arrive one by one, in chunks of any size.
///
/// Overlong forms, surrogates and what lies beyond U+10FFFF are no UTF-8 (The Unicode Standard,
/// table 3-7).
class utf8_check {
public:
  /// Whether the text can be UTF-8 up to and with this byte.
  bool accept(unsigned char byte);

  /// Whether the text may end here.
  bool complete() const { return missing_ == 0; }

private:
  bool begin(unsigned char byte);
  bool expect(int continuations, unsigned char lowest, unsigned char highest);

  int missing_ = 0;  ///< continuation bytes that the character still lacks
  unsigned char lowest_ = 0x80;
  unsigned char highest_ = 0xBF;
};

}  // namespace gait_walk

#endif
