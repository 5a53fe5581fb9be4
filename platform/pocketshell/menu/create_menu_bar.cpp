#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/menu/menu_bar_resource.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/window/shell_window.h"

using namespace pocketshell;

namespace {

constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | CCS_NORESIZE |
                         CCS_NOPARENTALIGN | CCS_NODIVIDER | TBSTYLE_FLAT | TBSTYLE_LIST | TBSTYLE_TOOLTIPS;
constexpr COLORREF kTransparent = RGB(192, 192, 192);
constexpr int kLongestLabel = 80;

std::optional<MenuBarResource> loadDescription(HINSTANCE instance, UINT id) {
  const HRSRC place = FindResourceW(instance, MAKEINTRESOURCEW(id), RT_RCDATA);
  if (!place) return std::nullopt;
  const HGLOBAL loaded = LoadResource(instance, place);
  const auto* const bytes = loaded ? static_cast<const std::byte*>(LockResource(loaded)) : nullptr;
  if (!bytes) return std::nullopt;
  return readMenuBarResource({bytes, SizeofResource(instance, place)});
}

std::optional<DropDown> loadDropDown(HINSTANCE instance, const MenuBarButton& button, HMENU menu) {
  std::array<wchar_t, kLongestLabel> label{};
  const HMENU popup = GetSubMenu(menu, button.popup);
  if (!popup) return std::nullopt;
  const int length = LoadStringW(instance, button.label, label.data(), kLongestLabel);
  if (length == 0) return std::nullopt;
  return DropDown{button.command, std::wstring(label.data(), static_cast<std::size_t>(length)), popup};
}

std::optional<MenuBarParts> loadParts(const SHMENUBARINFO& info, const MenuBarResource& description) {
  MenuBarParts parts;
  parts.instance = info.hInstRes;
  parts.menu = UniqueMenu(LoadMenuW(info.hInstRes, MAKEINTRESOURCEW(description.menu)));
  if (!parts.menu) return std::nullopt;
  for (const MenuBarButton& button : description.buttons) {
    auto dropDown = loadDropDown(info.hInstRes, button, parts.menu.get());
    if (!dropDown) return std::nullopt;
    parts.dropDowns.push_back(std::move(*dropDown));
  }
  if (info.nBmpId == 0) return parts;
  parts.bitmap = static_cast<WORD>(info.nBmpId);
  parts.images = UniqueImageList(HandheldLoadImages(info.hInstRes, parts.bitmap, kTransparent));
  if (!parts.images || ImageList_GetImageCount(parts.images.get()) < info.cBmpImages) return std::nullopt;
  return parts;
}

bool addButtons(HWND toolbar, const MenuBarResource& description, const std::vector<DropDown>& dropDowns) {
  std::vector<TBBUTTON> buttons;
  for (std::size_t i = 0; i < description.buttons.size(); ++i) {
    const MenuBarButton& described = description.buttons[i];
    TBBUTTON button{};
    button.iBitmap = described.image;
    button.idCommand = described.command;
    button.fsState = described.state;
    button.fsStyle = described.style;
    button.iString = reinterpret_cast<INT_PTR>(dropDowns[i].label.c_str());
    buttons.push_back(button);
  }
  return SendMessageW(toolbar, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data())) !=
         FALSE;
}

}  // namespace

BOOL SHCreateMenuBar(SHMENUBARINFO* info) {
  if (!info || info->cbSize != sizeof(SHMENUBARINFO) || !IsWindow(info->hwndParent)) return FALSE;
  const auto description = loadDescription(info->hInstRes, info->nToolBarId);
  if (!description) return FALSE;
  auto parts = loadParts(*info, *description);
  if (!parts) return FALSE;
  INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_BAR_CLASSES};
  InitCommonControlsEx(&controls);
  const HWND parent = info->hwndParent;
  UniqueWindow toolbar(CreateWindowExW(0, TOOLBARCLASSNAMEW, L"", kStyle & ~static_cast<DWORD>(WS_VISIBLE), 0,
                                       0, 0, 0, parent, nullptr, info->hInstRes, nullptr));
  if (!toolbar) return FALSE;
  SendMessageW(toolbar.get(), TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  if (!addButtons(toolbar.get(), *description, parts->dropDowns)) return FALSE;
  const HWND bar = toolbar.release();
  HandheldNameControl(bar, 0, L"Menu");
  for (std::size_t i = 0; i < parts->dropDowns.size(); ++i) {
    HandheldNameControl(bar, static_cast<LONG>(i) + 1, withoutAccessMarks(parts->dropDowns[i].label).c_str());
  }
  MenuBar& layer = MenuBar::attach(bar, parent, std::move(*parts));
  layer.addPanelButton();
  ShellWindow& shell = ShellWindow::attach(parent);
  shell.setMenuBar(bar);
  if (shell.desktopMenu()) layer.addMenuButton();
  layer.applyZoom(SWP_SHOWWINDOW);
  info->hwndMB = bar;
  return TRUE;
}
