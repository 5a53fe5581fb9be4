#pragma once

#include <windows.h>

#include <vector>

namespace pocketshell {

/// The input panel's size in handheld pixels, as long as the screen is not wider; its keys grow with it.
inline constexpr int kPanelWidth = 240;
inline constexpr int kPanelHeight = 80;

struct PanelKey {
  enum class Kind {
    character,  ///< types `plain`, or `shifted`
    stroke,     ///< presses the key `stroke`
    shift,      ///< for the next character
    lock,       ///< for all letters until it is tapped again
  };

  Kind kind = Kind::character;
  RECT place{};  ///< in the panel, in handheld pixels
  wchar_t plain = 0;
  wchar_t shifted = 0;
  WORD stroke = 0;
  const wchar_t* label = L"";  ///< for a key that shows no character; an arrow is drawn instead of ""
};

/// All keys; together they cover the panel without gaps.
const std::vector<PanelKey>& panelKeys();

/// Where a key is in a panel as wide as this.
RECT keyPlace(const PanelKey& key, int panelWidth);

/// What shift and lock make of the keys.
struct PanelShift {
  bool shift = false;
  bool lock = false;
};

/// The character that a key types.
wchar_t characterOf(const PanelKey& key, PanelShift state);
/// The state after a key was tapped.
PanelShift shiftAfter(const PanelKey& key, PanelShift state);

}  // namespace pocketshell
