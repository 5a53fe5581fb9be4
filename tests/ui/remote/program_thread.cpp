#include "tests/ui/remote/program_thread.h"

#include <atomic>
#include <utility>

#include "app/start/start_up.h"
#include "gtest/gtest.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/support/window_reading.h"

namespace {

/// Of this thread. The system's own for typing is left out: it comes and goes with the thread.
int windowCount() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM result) -> BOOL {
        if (classOf(window) != L"IME") ++*reinterpret_cast<int*>(result);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

void postToThisThread(UINT message) {
  // Looking makes the queue, without which nothing can be posted.
  MSG none{};
  PeekMessageW(&none, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
  EXPECT_TRUE(PostThreadMessageW(GetCurrentThreadId(), message, 0, 0));
}

constexpr int kRebarId = 1000;
constexpr UINT kMarkMessage = WM_APP + 1;
std::atomic<bool> markSeen = false;

LRESULT CALLBACK seeMessage(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HC_ACTION && reinterpret_cast<const MSG*>(lParam)->message == kMarkMessage) markSeen = true;
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

/// Until a thread takes the next message from its queue: what it does at present is over then. Messages
/// that are sent would be answered in the midst of it.
void waitForLoop(DWORD thread) {
  const HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, seeMessage, nullptr, thread);
  markSeen = false;
  PostThreadMessageW(thread, kMarkMessage, 0, 0);
  EXPECT_TRUE(remote::waitUntil([] { return markSeen.load(); }));
  UnhookWindowsHookEx(hook);
}

}  // namespace

ProgramThread::ProgramThread(std::wstring commandLine, UINT earlyMessage)
    : thread_([this, earlyMessage, arguments = std::move(commandLine)] {
        if (earlyMessage != 0) postToThisThread(earlyMessage);
        run(arguments);
      }) {}

ProgramThread::~ProgramThread() {
  if (thread_.joinable()) end(WM_CLOSE, 0);
}

void ProgramThread::run(const std::wstring& commandLine) {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  end_.exitCode = runProgram(instance, commandLine.c_str(), SW_SHOWNORMAL);
  end_.windowCount = windowCount();
}

HWND ProgramThread::waitForPage() {
  const DWORD process = GetCurrentProcessId();
  remote::waitUntil([&] {
    main_ = remote::mainWindow(process);
    // The grid is seen for a moment at its creation; the bands come with the first page.
    return main_ != nullptr && remote::control(main_, kRebarId) != nullptr &&
           remote::shownPage(main_) != nullptr;
  });
  waitForLoop(GetWindowThreadProcessId(main_, nullptr));
  return main_;
}

ProgramThread::End ProgramThread::end(UINT message, WPARAM wParam) {
  PostMessageW(main_, message, wParam, 0);
  thread_.join();
  // The classes outlast a run within the process, and the next run registers them again.
  for (const wchar_t* name : {L"Quivane", L"Record List View", L"Form Wrapper Wnd"})
    UnregisterClassW(name, GetModuleHandleW(nullptr));
  return end_;
}
