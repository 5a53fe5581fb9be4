#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

/// Radio buttons with consecutive identifiers that stand for the values 0, 1, 2 ...
struct RadioChoice {
  int firstId;
  int lastId;
};

/// Checks the button of `value`, none for a value that has no button. The buttons' template has no tab
/// stops: the checked button becomes one, so a group without a checked one is passed by. A radio button
/// that gets the focus is checked by that alone, and the value would be lost.
void checkRadioChoice(HWND dialog, RadioChoice choice, std::uint32_t value);

/// The value of the first checked button; nothing when none is.
std::optional<std::uint32_t> checkedRadioChoice(HWND dialog, RadioChoice choice);
