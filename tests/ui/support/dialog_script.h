#pragma once

#include <windows.h>

#include <functional>

/// What is done with the dialogs that open on this thread while it lives. Each is handed to the script once
/// its controls stand; the script posts what closes it (close below). Message boxes are among them, unless a
/// MessageBoxes answers these.
class DialogScript {
 public:
  using Step = std::function<void(HWND dialog)>;

  /// One script exists at a time.
  explicit DialogScript(Step step);
  ~DialogScript();
  DialogScript(const DialogScript&) = delete;
  DialogScript& operator=(const DialogScript&) = delete;

  /// How many dialogs were opened.
  int count() const { return count_; }

  static void close(HWND dialog, int command) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(command), 0);
  }

  /// Dialogs of which `isAnswered` says so are from now on left to somebody else; none for null.
  static void leaveOut(bool (*isAnswered)(HWND dialog));

  /// The dialog whose controls stand now, by what a hook of WH_CALLWNDPROCRET is given; null when something
  /// else has happened.
  static HWND openedDialog(int code, LPARAM lParam);

 private:
  static LRESULT CALLBACK hookProcedure(int code, WPARAM wParam, LPARAM lParam);

  Step step_;
  HHOOK hook_ = nullptr;
  int count_ = 0;
};

/// Dispatches what is posted to this thread until nothing is left.
void dispatchPosted();
