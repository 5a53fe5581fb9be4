#include "dialogs/controls/radio_choice.h"

void checkRadioChoice(HWND dialog, RadioChoice choice, std::uint32_t value) {
  if (value > static_cast<std::uint32_t>(choice.lastId - choice.firstId)) return;
  CheckRadioButton(dialog, choice.firstId, choice.lastId, choice.firstId + static_cast<int>(value));
}

std::optional<std::uint32_t> checkedRadioChoice(HWND dialog, RadioChoice choice) {
  for (int id = choice.firstId; id <= choice.lastId; ++id) {
    if (IsDlgButtonChecked(dialog, id) == BST_CHECKED) {
      return static_cast<std::uint32_t>(id - choice.firstId);
    }
  }
  return std::nullopt;
}
