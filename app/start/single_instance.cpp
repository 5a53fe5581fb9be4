#include "app/start/single_instance.h"

#include "app/start/command_line.h"
#include "app/window/main_window.h"
#include "app/window/messages.h"

namespace {

constexpr wchar_t kMutexName[] = L"Local\\Quivane.SingleInstance";
constexpr DWORD kWaitForWindow = 10'000;  // milliseconds
constexpr DWORD kWaitStep = 20;
constexpr UINT kSendTimeout = 5'000;

}  // namespace

SingleInstance::SingleInstance() : mutex_(CreateMutexW(nullptr, FALSE, kMutexName)) {
  const ULONGLONG start = GetTickCount64();
  do {
    firstWindow_ = FindWindowW(kMainWindowClass, kMainWindowTitle);
    if (firstWindow_) return;
    // Where there is no mutex to be had, the window alone decides.
    const DWORD result = mutex_ ? WaitForSingleObject(mutex_.get(), kWaitStep) : WAIT_OBJECT_0;
    if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) {
      isFirst_ = true;
      return;
    }
    // While it has a file chosen, its title says for what.
    firstWindow_ = FindWindowW(kMainWindowClass, nullptr);
    isChoosingFile_ = firstWindow_ != nullptr;
    if (firstWindow_) return;
  } while (GetTickCount64() - start < kWaitForWindow);
}

SingleInstance::~SingleInstance() {
  if (isFirst_ && mutex_) ReleaseMutex(mutex_.get());
}

void SingleInstance::callFirst(const String& path) const {
  if (!firstWindow_) return;
  send(kPathFromSecondCopyMessage, reinterpret_cast<WPARAM>(path.text()), 0);
  if (isChoosingFile_ && !path.isEmpty()) {
    const String full = fullPath(path);
    COPYDATASTRUCT data{};
    data.dwData = kPathForLater;
    data.cbData = static_cast<DWORD>((full.length() + 1) * sizeof(wchar_t));
    data.lpData = const_cast<wchar_t*>(full.text());
    send(WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data));
  }
  // When no window of this system is in front, another system manages the screen, too. It lets a window
  // come before its own only when it appears.
  const bool mustAppear = GetForegroundWindow() == GetDesktopWindow();
  if (mustAppear) ShowWindowAsync(firstWindow_, SW_MINIMIZE);
  if (mustAppear || IsIconic(firstWindow_)) ShowWindowAsync(firstWindow_, SW_RESTORE);
  // Under a dialog it takes no input: that dialog is what the user has to see.
  SetForegroundWindow(IsWindowEnabled(firstWindow_) ? firstWindow_ : GetLastActivePopup(firstWindow_));
}

/// A copy that hangs must not take this one with it.
void SingleInstance::send(UINT message, WPARAM wParam, LPARAM lParam) const {
  SendMessageTimeoutW(firstWindow_, message, wParam, lParam, SMTO_ABORTIFHUNG, kSendTimeout, nullptr);
}
