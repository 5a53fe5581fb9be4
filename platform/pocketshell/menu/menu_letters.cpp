#include "platform/pocketshell/menu/menu_letters.h"

#include <cwctype>
#include <utility>
#include <vector>

#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_line.h"

namespace pocketshell {

namespace {

/// Above and below a line, and beside a text, in the monitor's pixels.
constexpr int kLineMargin = 2;
constexpr int kTextMargin = 4;

/// A device context in which the font of menus is selected.
class MenuContext {
 public:
  explicit MenuContext(HDC dc) : dc_(dc) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)) {
      font_.reset(CreateFontIndirectW(&metrics.lfMenuFont));
    }
    former_ = font_ ? SelectObject(dc_, font_.get()) : nullptr;
  }
  ~MenuContext() {
    if (former_) SelectObject(dc_, former_);
  }
  MenuContext(const MenuContext&) = delete;
  MenuContext& operator=(const MenuContext&) = delete;

  int lineHeight() const {
    TEXTMETRICW metrics{};
    return GetTextMetricsW(dc_, &metrics) ? static_cast<int>(metrics.tmHeight) : 0;
  }

 private:
  HDC dc_;
  UniqueFont font_;
  HGDIOBJ former_ = nullptr;
};

std::wstring itemText(HMENU menu, UINT place) {
  const int length = GetMenuStringW(menu, place, nullptr, 0, MF_BYPOSITION);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  const int copied = GetMenuStringW(menu, place, text.data(), length + 1, MF_BYPOSITION);
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

/// The letter behind the mark, else the first one.
wchar_t keyOf(const std::wstring& text) {
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == L'&' && text[++i] != L'&') return text[i];
  }
  return text.empty() ? L'\0' : text.front();
}

void drawCheckMark(HDC dc, const RECT& place, COLORREF color, COLORREF background) {
  const int width = static_cast<int>(place.right - place.left);
  const int height = static_cast<int>(place.bottom - place.top);
  const UniqueMemoryDc memory(CreateCompatibleDC(dc));
  const UniqueBitmap mask(CreateBitmap(width, height, 1, 1, nullptr));
  if (!memory || !mask) return;
  const HGDIOBJ former = SelectObject(memory.get(), mask.get());
  RECT whole = {0, 0, width, height};
  DrawFrameControl(memory.get(), &whole, DFC_MENU, DFCS_MENUCHECK);
  const COLORREF formerText = SetTextColor(dc, color);
  const COLORREF formerBack = SetBkColor(dc, background);
  BitBlt(dc, static_cast<int>(place.left), static_cast<int>(place.top), width, height, memory.get(), 0, 0,
         SRCCOPY);
  SetTextColor(dc, formerText);
  SetBkColor(dc, formerBack);
  SelectObject(memory.get(), former);
}

}  // namespace

void drawMenuItem(const DRAWITEMSTRUCT& item, const std::wstring& text) {
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  const bool grey = (item.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
  const COLORREF background = GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_MENU);
  const COLORREF color = GetSysColor(grey ? COLOR_GRAYTEXT : selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT);
  fillArea(item.hDC, item.rcItem, background);
  const int markWidth = GetSystemMetrics(SM_CXMENUCHECK);
  RECT line = item.rcItem;
  line.left += markWidth + kTextMargin;
  if ((item.itemState & ODS_CHECKED) != 0) {
    const int markHeight = GetSystemMetrics(SM_CYMENUCHECK);
    const LONG top = (item.rcItem.top + item.rcItem.bottom - markHeight) / 2;
    drawCheckMark(item.hDC, {item.rcItem.left, top, item.rcItem.left + markWidth, top + markHeight}, color,
                  background);
  }
  const MenuContext context(item.hDC);
  const TextColor colors(item.hDC, color);
  drawTextLine(item.hDC, withoutAccessMarks(text), line, LinePlace::left);
}

UINT MenuLetters::choose(HMENU menu, POINT where) {
  // While a popup is open another one may be asked for, which ends it.
  const HMENU formerMenu = std::exchange(menu_, menu);
  const auto formerTexts = std::exchange(texts_, {});
  takeOver(menu);
  const auto chosen = static_cast<UINT>(TrackPopupMenuEx(menu, TPM_RETURNCMD, static_cast<int>(where.x),
                                                         static_cast<int>(where.y), window(), nullptr));
  menu_ = formerMenu;
  texts_ = formerTexts;
  return chosen;
}

void MenuLetters::takeOver(HMENU menu) {
  const UniqueWindowDc dc(window());
  const MenuContext context(dc.dc());
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<UINT>(i);
    const std::wstring text = itemText(menu, place);
    if (!needsOtherFonts(dc.dc(), text)) continue;
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_FTYPE | MIIM_DATA;
    item.fType = MFT_OWNERDRAW;
    item.dwItemData = place;
    if (SetMenuItemInfoW(menu, place, TRUE, &item)) texts_[place] = text;
  }
}

const std::wstring* MenuLetters::textAt(ULONG_PTR itemData) const {
  const auto found = texts_.find(static_cast<UINT>(itemData));
  return found != texts_.end() ? &found->second : nullptr;
}

bool MenuLetters::measure(MEASUREITEMSTRUCT& item) const {
  const std::wstring* const text = item.CtlType == ODT_MENU ? textAt(item.itemData) : nullptr;
  if (!text) return false;
  const UniqueWindowDc dc(window());
  const MenuContext context(dc.dc());
  item.itemWidth = static_cast<UINT>(textLineWidth(dc.dc(), withoutAccessMarks(*text)) + 2 * kTextMargin);
  item.itemHeight = static_cast<UINT>(context.lineHeight() + 2 * kLineMargin);
  return true;
}

LRESULT MenuLetters::itemOfKey(wchar_t key) const {
  std::vector<UINT> found;
  std::size_t next = 0;
  const int count = GetMenuItemCount(menu_);
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<UINT>(i);
    const std::wstring* const drawn = textAt(place);
    const std::wstring text = drawn ? *drawn : itemText(menu_, place);
    const bool isKey = std::towupper(keyOf(text)) == std::towupper(key);
    if (isKey) found.push_back(place);
    if ((GetMenuState(menu_, place, MF_BYPOSITION) & MF_HILITE) != 0) next = found.size();
  }
  if (found.empty()) return 0;
  if (found.size() == 1) return MAKELRESULT(found.front(), MNC_EXECUTE);
  return MAKELRESULT(found[next % found.size()], MNC_SELECT);
}

LRESULT MenuLetters::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_MEASUREITEM && measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
  if (message == WM_DRAWITEM) {
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    const std::wstring* const text = item.CtlType == ODT_MENU ? textAt(item.itemData) : nullptr;
    if (text) {
      drawMenuItem(item, *text);
      return TRUE;
    }
  }
  if (message == WM_MENUCHAR && menu_ && reinterpret_cast<HMENU>(lParam) == menu_) {
    if (const LRESULT item = itemOfKey(static_cast<wchar_t>(LOWORD(wParam)))) return item;
  }
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell

UINT HandheldChooseFromMenu(HMENU menu, POINT where, HWND owner) {
  return pocketshell::MenuLetters::attach(owner).choose(menu, where);
}
