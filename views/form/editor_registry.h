#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

/// Finds the editor of a window for the subclass procedures, which receive the window alone. There is
/// room for a fixed number of editors; those beyond it are not known here and behave as plain controls.
template <typename Editor>
class EditorRegistry {
 public:
  static constexpr std::size_t kSlotCount = 50;

  /// Whether there is a slot for the editor that has this number, from 0, within its kind on the form: not
  /// all are made in field order.
  static constexpr bool hasRoomFor(int number) { return number < static_cast<int>(kSlotCount); }

  /// False when no slot is left; nothing has changed then. The editor is removed before it dies.
  bool add(HWND window, Editor& editor) noexcept {
    if (!window || count_ == kSlotCount) return false;
    slots_[count_++] = {window, &editor};
    return true;
  }

  /// The first editor that was added for the window, null when there is none.
  Editor* find(HWND window) const noexcept {
    for (const Slot& slot : slots_) {
      if (slot.editor && slot.window == window) return slot.editor;
    }
    return nullptr;
  }

  /// The slot stays taken until the next reset.
  void remove(const Editor& editor) noexcept {
    for (Slot& slot : slots_) {
      if (slot.editor == &editor) slot = {};
    }
  }

  void reset() noexcept {
    slots_ = {};
    count_ = 0;
  }

  std::size_t count() const noexcept { return count_; }

 private:
  struct Slot {
    HWND window = nullptr;
    Editor* editor = nullptr;
  };

  std::array<Slot, kSlotCount> slots_{};
  std::size_t count_ = 0;
};
