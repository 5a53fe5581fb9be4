#include "tests/ui/remote/menu_texts.h"

#include <cwctype>

namespace {

std::string itemText(HMENU menu, int index) {
  wchar_t text[100] = L"";
  GetMenuStringW(menu, static_cast<UINT>(index), text, ARRAYSIZE(text), MF_BYPOSITION);
  std::string narrow;
  for (const wchar_t* c = text; *c != L'\0'; ++c) narrow.push_back(static_cast<char>(*c));
  return narrow;
}

std::string withoutAccessKey(std::string text) {
  const std::size_t mark = text.find('&');
  if (mark != std::string::npos) text.erase(mark, 1);
  return text;
}

void addLines(HMENU menu, const std::string& indent, std::vector<std::string>& lines) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const std::string text = withoutAccessKey(itemText(menu, i));
    if (const HMENU submenu = GetSubMenu(menu, i)) {
      lines.push_back(indent + text + " >");
      addLines(submenu, indent + "  ", lines);
      continue;
    }
    const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
    if ((state & MF_SEPARATOR) != 0) {
      lines.push_back(indent + "-");
      continue;
    }
    const bool grey = (state & MF_GRAYED) != 0;
    lines.push_back(indent + text + " " + std::to_string(GetMenuItemID(menu, i)) + (grey ? " grey" : ""));
  }
}

}  // namespace

std::vector<std::string> menuLines(HMENU menu) {
  std::vector<std::string> lines;
  addLines(menu, "", lines);
  return lines;
}

std::vector<std::string> accessKeyFaults(HMENU popup) {
  std::vector<std::string> faults;
  std::string seen;
  for (int i = 0; i < GetMenuItemCount(popup); ++i) {
    if (const HMENU submenu = GetSubMenu(popup, i)) {
      for (const std::string& fault : accessKeyFaults(submenu)) faults.push_back(fault);
    }
    const std::string text = itemText(popup, i);
    if (text.empty()) continue;
    const std::size_t mark = text.find('&');
    if (mark == std::string::npos || mark + 1 == text.size()) {
      faults.push_back(text + ": no access key");
      continue;
    }
    const auto key = static_cast<char>(std::towupper(static_cast<wint_t>(text[mark + 1])));
    if (seen.find(key) != std::string::npos) faults.push_back(text + ": access key taken");
    seen.push_back(key);
  }
  return faults;
}
