#include "views/shared/typed_letters.h"

#include <commctrl.h>

#include <algorithm>
#include <new>

#include "views/shared/escaped_exception.h"
#include "views/shared/list_view.h"

namespace {

constexpr DWORD kPause = 1000;  // milliseconds, after which another text begins
constexpr wchar_t kLastOfTheSystems = L'~';

bool isFirstHalf(wchar_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

}  // namespace

void TypedLetters::watch(HWND list) noexcept {
  try {
    attach(list);
  } catch (const std::bad_alloc&) {
    // As told.
  }
}

LRESULT TypedLetters::answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  const auto letter = static_cast<wchar_t>(wParam);
  if (message != WM_CHAR || letter < L' ') return passOn(message, wParam, lParam);
  try {
    if (take(letter)) return 0;
  } catch (...) {
    tellEscapedException(window());
  }
  return passOn(message, wParam, lParam);
}

bool TypedLetters::take(wchar_t letter) {
  add(letter, static_cast<DWORD>(GetMessageTime()));
  if (isTheSystems()) return false;
  if (!isFirstHalf(letter)) choose();
  return true;
}

void TypedLetters::add(wchar_t letter, DWORD time) {
  if (time - lastTime_ > kPause) text_.clear();
  lastTime_ = time;
  text_ += letter;
}

bool TypedLetters::isTheSystems() const {
  return std::all_of(text_.begin(), text_.end(), [](wchar_t letter) { return letter <= kLastOfTheSystems; });
}

/// A letter that is typed again goes on to the next item that begins with it; what is added to a letter may
/// lead to the same item.
void TypedLetters::choose() const {
  const bool isOneLetter =
      std::all_of(text_.begin(), text_.end(), [this](wchar_t letter) { return letter == text_.front(); });
  const std::wstring beginning = isOneLetter ? text_.substr(0, 1) : text_;
  const int present = listview::nextItem(window(), listview::kFirstOfAll, LVNI_FOCUSED);
  // The search begins behind the item that is named.
  const int after = isOneLetter ? present : std::max(present - 1, listview::kFirstOfAll);
  const int found = listview::findBeginning(window(), after, beginning.c_str());
  if (found < 0) return;
  constexpr UINT kChosen = LVIS_SELECTED | LVIS_FOCUSED;
  listview::setItemState(window(), found, kChosen, kChosen);
  listview::ensureVisible(window(), found);
}
