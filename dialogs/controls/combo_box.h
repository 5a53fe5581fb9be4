#pragma once

#include <windows.h>

#include <string>

#include "base/name_list.h"
#include "base/showable_text.h"
#include "base/string.h"
#include "views/shared/child_control.h"

/// The messages of a combo box, typed. Indexes are 0-based, in the order of the list.
namespace combobox {

inline constexpr int kNoSelection = CB_ERR;

inline void clear(HWND combo) {
  SendMessageW(combo, CB_RESETCONTENT, 0, 0);
}

/// At the end, or in its place when the list is sorted; `data` goes with the entry.
inline void add(HWND combo, const String& text, std::uint32_t data = 0) {
  const std::wstring shown = showableText(text.text());
  const LRESULT place = SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
  if (place >= 0) SendMessageW(combo, CB_SETITEMDATA, static_cast<WPARAM>(place), data);
}

/// Of an entry.
inline std::wstring textAt(HWND combo, int index) {
  const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  const LRESULT copied =
      SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
  return text;
}

/// As after fill().
inline bool isFilledWith(HWND combo, const NameList& names) {
  const auto count = static_cast<std::uint32_t>(SendMessageW(combo, CB_GETCOUNT, 0, 0));
  if (count != names.size() || SendMessageW(combo, CB_GETCURSEL, 0, 0) != (count == 0 ? kNoSelection : 0))
    return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (textAt(combo, static_cast<int>(i)) != showableText(names[i].text())) return false;
    if (SendMessageW(combo, CB_GETITEMDATA, i, 0) != static_cast<LRESULT>(i)) return false;
  }
  return windowText(combo).text() == (count == 0 ? std::wstring() : textAt(combo, 0));
}

/// Replaces what the list held and selects the first entry, if there is one. A list that is to stay as it is
/// is not drawn anew.
inline void fill(HWND combo, const NameList& names) {
  if (isFilledWith(combo, names)) return;
  clear(combo);
  for (std::uint32_t i = 0; i < names.size(); ++i) add(combo, names[i], i);
  SendMessageW(combo, CB_SETCURSEL, 0, 0);
}

inline int selection(HWND combo) {
  return static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
}

inline void select(HWND combo, int index) {
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

/// The entry with exactly this text in whatever case of letters, as it is shown; none where there is none.
inline void selectText(HWND combo, const String& text) {
  const std::wstring shown = showableText(text.text());
  const LRESULT place = SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                     reinterpret_cast<LPARAM>(shown.c_str()));
  select(combo, static_cast<int>(place));
}

/// The whole text of the selected entry, empty when none is.
inline String selectedText(HWND combo) {
  const int index = selection(combo);
  return index == kNoSelection ? String() : String(textAt(combo, index).c_str());
}

/// Of the names that the list was filled with that of the selected entry, whose text shows what the control
/// can show of it. Empty when none is selected.
inline String selectedName(HWND combo, const NameList& names) {
  const int index = selection(combo);
  if (index == kNoSelection) return {};
  const auto place =
      static_cast<std::uint32_t>(SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
  return place < names.size() ? names[place] : String();
}

/// Of the edit; the system's own limit is lower than what people paste.
inline void removeTextLimit(HWND combo) {
  SendMessageW(combo, CB_LIMITTEXT, 0, 0);
}

}  // namespace combobox
