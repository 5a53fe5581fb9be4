#include "platform/help/browser.h"

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include <memory>
#include <string>

namespace help {

namespace {

struct HandleCloser {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

/// Wine's way to the browser outside; empty on Windows.
std::filesystem::path wineBrowser() {
  wchar_t folder[MAX_PATH];
  const UINT length = GetSystemDirectoryW(folder, ARRAYSIZE(folder));
  if (length == 0 || length >= ARRAYSIZE(folder)) return {};
  std::filesystem::path program = std::filesystem::path(folder) / L"winebrowser.exe";
  return GetFileAttributesW(program.c_str()) == INVALID_FILE_ATTRIBUTES ? std::filesystem::path() : program;
}

/// Its exit code tells whether a browser could be started. One that stays longer has found one.
bool showOutside(const std::filesystem::path& browser, const std::filesystem::path& page) {
  std::wstring commandLine = L"\"" + browser.wstring() + L"\" \"" + page.wstring() + L"\"";
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(browser.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &start, &started)) {
    return false;
  }
  const UniqueHandle thread(started.hThread);
  const UniqueHandle process(started.hProcess);
  constexpr DWORD kPatience = 10'000;
  DWORD exitCode = 0;
  return WaitForSingleObject(process.get(), kPatience) != WAIT_OBJECT_0 ||
         !GetExitCodeProcess(process.get(), &exitCode) || exitCode == 0;
}

bool showByAssociation(const std::filesystem::path& page) {
  // Some of the system's ways to a browser are objects.
  const bool hasCom = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE));
  SHELLEXECUTEINFOW task{};
  task.cbSize = sizeof(task);
  // The process ends at once, and what could not be shown is told by its own message.
  task.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
  task.lpFile = page.c_str();
  task.nShow = SW_SHOWNORMAL;
  const bool shown = ShellExecuteExW(&task) != FALSE;
  if (hasCom) CoUninitialize();
  return shown;
}

}  // namespace

bool showInBrowser(const std::filesystem::path& page) {
  const std::filesystem::path browser = wineBrowser();
  return browser.empty() ? showByAssociation(page) : showOutside(browser, page);
}

}  // namespace help
