#include "views/lookup/control_tip.h"

#include <utility>

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"

void ControlTip::create(HWND control) {
  window_.reset(CreateWindowExW(
      WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, control, nullptr, GetModuleHandleW(nullptr), nullptr));
  if (!window_) return;
  HandheldEquipTip(window_.get());
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = control;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(window_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ControlTip::answer(NMTTDISPINFOW& question, std::wstring text) {
  text_ = showableText(text);
  question.lpszText = text_.data();
}
