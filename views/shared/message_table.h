#pragma once

#include <windows.h>

#include <span>

#include "views/shared/escaped_exception.h"

/// Window procedures as tables: the first row whose number is that of the message answers it.

using MessageHandler = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct MessageRow {
  UINT message;
  MessageHandler handler;
};

/// Answers a message from the table, and a message without a row by `otherwise`. No exception leaves: what a
/// handler throws is told, and its message left to `otherwise` too.
template <typename Otherwise>
LRESULT answerFromTable(std::span<const MessageRow> table, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam, Otherwise otherwise) noexcept {
  for (const MessageRow& row : table) {
    if (row.message != message) continue;
    try {
      return row.handler(window, message, wParam, lParam);
    } catch (...) {
      tellEscapedException(window);
      break;
    }
  }
  return otherwise(window, message, wParam, lParam);
}

/// The same for the messages of a window whose procedure has an object. What a handler throws goes on to the
/// caller.
template <typename Object>
struct ObjectMessageRow {
  UINT message;
  LRESULT (Object::*handler)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

template <typename Object, typename Otherwise>
LRESULT answerFromTable(Object& object, std::span<const ObjectMessageRow<Object>> table, HWND window,
                        UINT message, WPARAM wParam, LPARAM lParam, Otherwise otherwise) {
  for (const ObjectMessageRow<Object>& row : table) {
    if (row.message == message) return (object.*row.handler)(window, message, wParam, lParam);
  }
  return otherwise(window, message, wParam, lParam);
}
