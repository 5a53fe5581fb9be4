#pragma once

#include <windows.h>

#include <string>
#include <thread>

/// A run of the whole program on a thread of this process, so that its counts of what is alive can be
/// read. One at a time.
class ProgramThread {
 public:
  /// What the program is given as its command line, and, but for 0, a message that lies in its queue before
  /// any of its own.
  explicit ProgramThread(std::wstring commandLine, UINT earlyMessage = 0);
  /// Closes the main window if the program still runs.
  ~ProgramThread();
  ProgramThread(const ProgramThread&) = delete;
  ProgramThread& operator=(const ProgramThread&) = delete;

  /// The main window once a page is shown in it and the program waits for what the user does next; null
  /// when that takes too long.
  HWND waitForPage();

  struct End {
    int exitCode;
    int windowCount;  ///< windows that the thread still had when the program was over
  };
  /// Posts a message to the main window that ends the program, and waits for the end.
  End end(UINT message, WPARAM wParam);

 private:
  void run(const std::wstring& commandLine);

  End end_{};
  HWND main_ = nullptr;
  std::thread thread_;
};
