#pragma once

#include <windows.h>

namespace pocketshell {

class MenuBar;

/// What a key does to a menu bar whose buttons are walked before a popup is open.
struct MenuKeyEffect {
  enum class Action { none, move, open, leave } action = Action::none;
  int index = 0;

  bool operator==(const MenuKeyEffect&) const = default;
};

/// `index` of `count` buttons is highlighted; `mnemonic` is the button that the key's letter stands for,
/// -1 for none.
MenuKeyEffect menuKeyEffect(WPARAM key, int index, int count, int mnemonic);

/// The keyboard of menu bars. A control that has the keyboard would keep Alt and a letter to itself, so
/// the messages are looked at when they leave the queue: by the program's loop, because under Wine a hook
/// makes each message of the thread four questions to another process dearer.
class MenuKeys {
 public:
  /// A message of the bar's keyboard becomes one to the bar's parent. Others stay as they are.
  static void redirect(MSG& message);

  /// Alt or F10 was pressed: the first button is highlighted and the keys walk the buttons.
  static void enter(MenuBar& bar);
  static void leave();

  /// The message by which a key reaches the bar's parent while the buttons are walked; wParam is the key.
  static UINT keyMessage();
  static void keyPressed(WPARAM key);
};

}  // namespace pocketshell
