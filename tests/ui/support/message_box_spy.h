#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/ui/support/import_swap.h"

/// Stands in for the system's message boxes as long as it lives: each is written down and answered with
/// OK at once.
class MessageBoxSpy {
 public:
  struct Box {
    HWND owner = nullptr;
    std::wstring text;
    std::wstring caption;
    UINT flags = 0;
    bool operator==(const Box&) const = default;
  };

  MessageBoxSpy();

  /// The boxes since the last call.
  static std::vector<Box> take();

 private:
  ImportSwap<decltype(&MessageBoxW)> swap_;
};
