#pragma once

/// Told that what the user has typed and not stored may have changed, for what the program's message loop
/// does not see: what happens in the loops of dialogs and boxes, and before something that lasts. Null for
/// nobody.
extern void (*typedWatch)() noexcept;

inline void tellTypedWatch() noexcept {
  if (typedWatch) typedWatch();
}
