#include "platform/pocketshell/naming/dialog_names.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/window/window_class.h"

namespace pocketshell {

namespace {

bool isNamedByLabel(HWND control) {
  constexpr std::array kClasses = {WC_EDITW, WC_COMBOBOXW, WC_LISTBOXW, WC_LISTVIEWW};
  return std::any_of(kClasses.begin(), kClasses.end(),
                     [&](const wchar_t* each) { return isOfClass(control, each); });
}

/// As it is read aloud: on one line, without the colon and the mark of the access key.
std::wstring spokenLabel(HWND label) {
  std::wstring text = withoutAccessMarks(windowText(label));
  std::replace(text.begin(), text.end(), L'\n', L' ');
  while (!text.empty() && (text.back() == L':' || text.back() == L' ')) text.pop_back();
  return text;
}

}  // namespace

void nameByLabels(HWND dialog) {
  std::wstring label;
  for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    if (isOfClass(control, WC_STATICW)) {
      // An empty one is a place for texts that come later.
      if (std::wstring text = spokenLabel(control); !text.empty()) label = std::move(text);
      continue;
    }
    if (!label.empty() && isNamedByLabel(control)) HandheldNameControl(control, 0, label.c_str());
    label.clear();
  }
}

}  // namespace pocketshell
