#pragma once

#include <windows.h>

#include <deque>
#include <iosfwd>
#include <string>
#include <vector>

/// Looks at every message box that this thread shows while it lives, and answers it.
class MessageBoxes {
 public:
  /// As the user saw it.
  struct Box {
    std::wstring caption;
    std::wstring text;
    HICON icon = nullptr;            ///< null when it showed none
    std::vector<int> buttons{IDOK};  ///< in their order
    HWND owner = nullptr;
    bool comesToFront = false;  ///< the program asks for that
    bool isTopmost = false;     ///< nothing can cover it
    bool isModal = true;        ///< no other window of this thread took input
    bool operator==(const Box&) const = default;
  };

  /// One exists at a time.
  MessageBoxes();
  ~MessageBoxes();
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;

  /// The boxes since the last call.
  std::vector<Box> take();

  /// Each box is answered with OK but the next that has no answer yet.
  void answerNext(int button) { answers_.push_back(button); }

 private:
  static LRESULT CALLBACK hookProcedure(int code, WPARAM wParam, LPARAM lParam);
  static void CALLBACK look(HWND box, UINT message, UINT_PTR timer, DWORD time);
  void answer(HWND box);

  HHOOK hook_ = nullptr;
  std::vector<Box> boxes_;
  std::deque<int> answers_;
  DWORD flags_ = 0;  // of the box that is open
};
void PrintTo(const MessageBoxes::Box& box, std::ostream* out);
