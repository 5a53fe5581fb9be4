#pragma once

#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <span>

#include "base/string.h"
#include "dialogs/controls/combo_box.h"

/// A few things to choose from in a drop-down list.

/// One of them, as the user reads it and as the program calls it.
struct Choice {
  const wchar_t* shown;
  const wchar_t* value;
};

/// In the place of what the list held.
inline void fillChoices(HWND combo, std::span<const Choice> choices) {
  combobox::clear(combo);
  for (const Choice& choice : choices) combobox::add(combo, choice.shown);
}

/// None where no choice has the value.
inline void selectChoice(HWND combo, std::span<const Choice> choices, const String& value) {
  const auto found = std::find_if(choices.begin(), choices.end(), [&](const Choice& choice) {
    return std::wcscmp(choice.value, value.text()) == 0;
  });
  const int index =
      found != choices.end() ? static_cast<int>(found - choices.begin()) : combobox::kNoSelection;
  combobox::select(combo, index);
}

/// The empty text when none is selected.
inline const wchar_t* chosenValue(HWND combo, std::span<const Choice> choices) {
  const int index = combobox::selection(combo);
  return index == combobox::kNoSelection ? L"" : choices[static_cast<std::size_t>(index)].value;
}
