#pragma once

#include <cstdint>

/// Which characters a text editor of the form takes from the keyboard.

struct KeystrokeRules {
  bool numeric = false;  ///< digits only
  bool minusAllowed = false;
  std::uint32_t maximumLength = 0;  ///< for editors that are not numeric
};

struct KeystrokeState {
  /// How many characters the editor is believed to hold. What comes and goes otherwise than by a key
  /// is not counted.
  std::uint32_t textLength = 0;
  bool tabPressed = false;
};

enum class KeystrokeVerdict {
  accept,
  reject,
  rejectWithMessage,  ///< the user is told that only numbers are allowed
};

/// Judges one character and brings `state` up to date with it.
KeystrokeVerdict filterKeystroke(wchar_t character, const KeystrokeRules& rules, KeystrokeState& state);
