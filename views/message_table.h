#pragma once

#include <windows.h>

#include <span>

/// Window procedures as tables: the first row whose number is that of the message answers it.

using MessageHandler = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct MessageRow {
  UINT message;
  MessageHandler handler;
};

/// Answers a message from the table, and a message without a row by `otherwise`. No exception leaves:
/// a handler that runs out of memory leaves its message to `otherwise` too.
template <typename Otherwise>
LRESULT answerFromTable(std::span<const MessageRow> table, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam, Otherwise otherwise) noexcept {
  for (const MessageRow& row : table) {
    if (row.message != message) continue;
    try {
      return row.handler(window, message, wParam, lParam);
    } catch (...) {
      break;
    }
  }
  return otherwise(window, message, wParam, lParam);
}
