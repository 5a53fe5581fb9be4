#include "platform/pocketshell/panel/panel_keys.h"

#include <array>
#include <string_view>

namespace pocketshell {

namespace {

using Kind = PanelKey::Kind;

constexpr int kRowHeight = 16;

/// Lays keys out from left to right in rows.
class Layout {
 public:
  void characters(std::wstring_view plain, std::wstring_view shifted, int width) {
    for (std::size_t i = 0; i < plain.size(); ++i) {
      add(width, {Kind::character, {}, plain[i], shifted[i], 0, L""});
    }
  }
  void stroke(const wchar_t* label, WORD key, int width) { add(width, {Kind::stroke, {}, 0, 0, key, label}); }
  void modifier(const wchar_t* label, Kind kind, int width) { add(width, {kind, {}, 0, 0, 0, label}); }
  void nextRow() {
    x_ = 0;
    y_ += kRowHeight;
  }

  std::vector<PanelKey> take() { return std::move(keys_); }

 private:
  void add(int width, PanelKey key) {
    key.place = {x_, y_, x_ + width, y_ + kRowHeight};
    keys_.push_back(key);
    x_ += width;
  }

  std::vector<PanelKey> keys_;
  int x_ = 0;
  int y_ = 0;
};

std::vector<PanelKey> layOutKeys() {
  Layout layout;
  layout.characters(L"1234567890-=", L"!@#$%^&*()_+", 17);
  layout.stroke(L"Bksp", VK_BACK, 36);
  layout.nextRow();
  layout.stroke(L"Tab", VK_TAB, 24);
  layout.characters(L"qwertyuiop[]", L"QWERTYUIOP{}", 18);
  layout.nextRow();
  layout.modifier(L"Caps", Kind::lock, 30);
  layout.characters(L"asdfghjkl;'", L"ASDFGHJKL:\"", 16);
  layout.stroke(L"Enter", VK_RETURN, 34);
  layout.nextRow();
  layout.modifier(L"Shift", Kind::shift, 36);
  layout.characters(L"zxcvbnm,./\\`", L"ZXCVBNM<>?|~", 17);
  layout.nextRow();
  layout.stroke(L"Esc", VK_ESCAPE, 36);
  layout.characters(L" ", L" ", 112);
  layout.stroke(L"", VK_UP, 23);
  layout.stroke(L"", VK_DOWN, 23);
  layout.stroke(L"", VK_LEFT, 23);
  layout.stroke(L"", VK_RIGHT, 23);
  return layout.take();
}

bool isLetter(wchar_t character) {
  return character >= L'a' && character <= L'z';
}

}  // namespace

const std::vector<PanelKey>& panelKeys() {
  static const std::vector<PanelKey> keys = layOutKeys();
  return keys;
}

RECT keyPlace(const PanelKey& key, int panelWidth) {
  return {key.place.left * panelWidth / kPanelWidth, key.place.top,
          key.place.right * panelWidth / kPanelWidth, key.place.bottom};
}

wchar_t characterOf(const PanelKey& key, PanelShift state) {
  const bool locked = state.lock && isLetter(key.plain);
  return state.shift != locked ? key.shifted : key.plain;
}

PanelShift shiftAfter(const PanelKey& key, PanelShift state) {
  switch (key.kind) {
    case Kind::shift:
      return {!state.shift, state.lock};
    case Kind::lock:
      return {state.shift, !state.lock};
    case Kind::character:
    case Kind::stroke:
      break;
  }
  return {false, state.lock};
}

}  // namespace pocketshell
