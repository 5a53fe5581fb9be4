#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// What is done with the dialogs and message boxes that open on this thread while it lives. Each is
/// handed to the script once its controls stand; the script posts what closes it (close below).
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

 private:
  static LRESULT CALLBACK hookProcedure(int code, WPARAM wParam, LPARAM lParam);

  Step step_;
  HHOOK hook_ = nullptr;
  int count_ = 0;
};

/// Answers every message box with OK and keeps its texts.
class MessageBoxes {
 public:
  struct Box {
    std::wstring caption;
    std::wstring text;
    bool operator==(const Box&) const = default;
  };

  const std::vector<Box>& seen() const { return seen_; }

 private:
  std::vector<Box> seen_;
  DialogScript script_{[this](HWND dialog) { answer(dialog); }};

  void answer(HWND dialog);
};

/// Dispatches what is posted to this thread until nothing is left.
void dispatchPosted();
