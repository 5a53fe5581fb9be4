#include <array>
#include <string>
#include <utility>
#include <vector>

#include "owners/window_layer.h"
#include "platform/pocketshell/handheld_windows.h"

namespace {

/// A toolbar that knows the tips of its buttons itself, whoever its parent is.
class ButtonTips : public WindowLayer<ButtonTips> {
 public:
  explicit ButtonTips(HWND toolbar) : WindowLayer(toolbar) {}

  void setTips(std::vector<std::wstring> tips) { tips_ = std::move(tips); }

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == TTN_GETDISPINFOW) {
      auto& wanted = *reinterpret_cast<NMTTDISPINFOW*>(lParam);
      const LRESULT index = passOn(TB_COMMANDTOINDEX, wanted.hdr.idFrom, 0);
      if (index >= 0 && static_cast<std::size_t>(index) < tips_.size()) {
        wanted.lpszText = tips_[static_cast<std::size_t>(index)].data();
        return 0;
      }
    }
    return passOn(message, wParam, lParam);
  }

 private:
  std::vector<std::wstring> tips_;
};

}  // namespace

BOOL HandheldSetButtonTips(HWND toolbar, UINT count, const wchar_t* const* tips) {
  if (!IsWindow(toolbar) || (count > 0 && !tips)) return FALSE;
  std::vector<std::wstring> copies;
  for (UINT i = 0; i < count; ++i) copies.emplace_back(tips[i] ? tips[i] : L"");
  for (UINT i = 0; i < count; ++i) {
    if (tips[i]) HandheldNameControl(toolbar, static_cast<LONG>(i) + 1, tips[i]);
  }
  ButtonTips::attach(toolbar).setTips(std::move(copies));
  if (const auto tip = reinterpret_cast<HWND>(SendMessageW(toolbar, TB_GETTOOLTIPS, 0, 0)))
    HandheldEquipTip(tip);
  return TRUE;
}
