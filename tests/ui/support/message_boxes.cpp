#include "tests/ui/support/message_boxes.h"

#include <utility>

#include "gtest/gtest.h"
#include "tests/ui/support/dialog_reading.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/window_reading.h"

namespace {

MessageBoxes* answering = nullptr;

/// The procedure of a message box lies in the system's own module, that of any other dialog elsewhere.
bool isMessageBox(HWND dialog) {
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  const auto procedure = reinterpret_cast<const wchar_t*>(GetWindowLongPtrW(dialog, DWLP_DLGPROC));
  HMODULE module = nullptr;
  return GetModuleHandleExW(kFlags, procedure, &module) != FALSE && module == GetModuleHandleW(L"user32.dll");
}

/// What the box was made with. Under Wine every box comes to the front, so only this tells whether the
/// program asks for it; the system hands it to the box as it begins.
DWORD flagsOfBox(LPARAM hookParameter) {
  const auto& done = *reinterpret_cast<const CWPRETSTRUCT*>(hookParameter);
  const auto* const parameters = reinterpret_cast<const MSGBOXPARAMSW*>(done.lParam);
  EXPECT_EQ(parameters->cbSize, sizeof(*parameters));
  return parameters->dwStyle;
}

bool takesInputBeside(HWND box) {
  struct Search {
    HWND box;
    bool found;
  } search{box, false};
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& looked = *reinterpret_cast<Search*>(parameter);
        const bool isFrame = (styleOf(window) & WS_CAPTION) == WS_CAPTION;
        if (isFrame && window != looked.box && IsWindowEnabled(window)) looked.found = true;
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::vector<int> buttonsOf(HWND box) {
  std::vector<int> buttons;
  for (const HWND child : childrenOf(box)) {
    if (classOf(child) == L"Button") buttons.push_back(GetDlgCtrlID(child));
  }
  return buttons;
}

}  // namespace

MessageBoxes::MessageBoxes() {
  answering = this;
  DialogScript::leaveOut(isMessageBox);
  hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, hookProcedure, nullptr, GetCurrentThreadId());
}

MessageBoxes::~MessageBoxes() {
  UnhookWindowsHookEx(hook_);
  DialogScript::leaveOut(nullptr);
  answering = nullptr;
}

std::vector<MessageBoxes::Box> MessageBoxes::take() {
  return std::exchange(boxes_, {});
}

LRESULT CALLBACK MessageBoxes::hookProcedure(int code, WPARAM wParam, LPARAM lParam) {
  const HWND dialog = DialogScript::openedDialog(code, lParam);
  if (dialog && answering && isMessageBox(dialog)) {
    constexpr UINT_PTR kTimer = 1;
    answering->flags_ = flagsOfBox(lParam);
    SetTimer(dialog, kTimer, 1, look);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void CALLBACK MessageBoxes::look(HWND box, UINT, UINT_PTR timer, DWORD) {
  if (!IsWindowVisible(box)) return;
  KillTimer(box, timer);
  if (answering) answering->answer(box);
}

void MessageBoxes::answer(HWND box) {
  const bool isTopmost = (GetWindowLongPtrW(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  boxes_.push_back({textOf(box), textOfBox(box), iconOfBox(box), buttonsOf(box), GetWindow(box, GW_OWNER),
                    (flags_ & MB_SETFOREGROUND) != 0, isTopmost, !takesInputBeside(box)});
  int button = IDOK;
  if (!answers_.empty()) {
    button = answers_.front();
    answers_.pop_front();
  }
  EXPECT_NE(GetDlgItem(box, button), nullptr) << "the box has no button " << button;
  DialogScript::close(box, button);
}

void PrintTo(const MessageBoxes::Box& box, std::ostream* out) {
  *out << testing::PrintToString(box.caption) << ": " << testing::PrintToString(box.text) << ", icon "
       << box.icon << ", buttons " << testing::PrintToString(box.buttons) << ", over " << box.owner
       << (box.comesToFront ? ", in front" : "") << (box.isTopmost ? ", topmost" : "")
       << (box.isModal ? "" : ", not modal");
}
