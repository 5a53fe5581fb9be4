#include "tests/ui/remote/focus_walk.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "owners/handles.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/remote/user_input.h"

namespace focuswalk {
namespace {

constexpr std::size_t kMostStops = 100;

std::wstring className(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
}

bool isOf(HWND window, const wchar_t* name) {
  return _wcsicmp(className(window).c_str(), name) == 0;
}

LONG buttonType(HWND window) {
  return isOf(window, WC_BUTTONW) ? GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK : -1;
}

bool isRadio(HWND window) {
  return buttonType(window) == BS_AUTORADIOBUTTON;
}

bool isWorked(HWND window) {
  static constexpr std::array kClasses = {WC_EDITW,     WC_COMBOBOXW,   WC_LISTBOXW,     WC_BUTTONW,
                                          WC_LISTVIEWW, WC_TABCONTROLW, MONTHCAL_CLASSW, DATETIMEPICK_CLASSW};
  return buttonType(window) != BS_GROUPBOX &&
         std::ranges::any_of(kClasses, [=](const wchar_t* name) { return isOf(window, name); });
}

/// The first of the radio buttons that belong together, else the control itself.
HWND standIn(HWND control) {
  HWND first = control;
  while (isRadio(first) && (GetWindowLongW(first, GWL_STYLE) & WS_GROUP) == 0) {
    const HWND before = GetWindow(first, GW_HWNDPREV);
    if (!before || !isRadio(before)) break;
    first = before;
  }
  return first;
}

void collect(HWND window, std::vector<HWND>& controls) {
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child) || !IsWindowEnabled(child)) continue;
    if (!isWorked(child)) {
      collect(child, controls);
    } else if (standIn(child) == child) {
      controls.push_back(child);
    }
  }
}

RECT placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

/// Whether the eye finds both in one line.
bool areBeside(const RECT& one, const RECT& other) {
  const LONG common = std::min(one.bottom, other.bottom) - std::max(one.top, other.top);
  return 2 * common > std::min(one.bottom - one.top, other.bottom - other.top);
}

struct Picture {
  RECT place{};
  std::vector<DWORD> points;

  std::vector<DWORD> part(const RECT& screen) const {
    std::vector<DWORD> found;
    for (LONG y = std::max(screen.top, place.top); y < std::min(screen.bottom, place.bottom); ++y) {
      for (LONG x = std::max(screen.left, place.left); x < std::min(screen.right, place.right); ++x) {
        found.push_back(
            points[static_cast<std::size_t>((y - place.top) * (place.right - place.left) + x - place.left)]);
      }
    }
    return found;
  }
};

/// What the screen shows where the window is.
Picture pictureOf(HWND window) {
  Picture picture;
  picture.place = placeOf(window);
  const int width = static_cast<int>(picture.place.right - picture.place.left);
  const int height = static_cast<int>(picture.place.bottom - picture.place.top);
  const UniqueMemoryDc memory(CreateCompatibleDC(nullptr));
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const UniqueBitmap bitmap(CreateDIBSection(memory.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
  BitBlt(memory.get(), 0, 0, width, height, screen, static_cast<int>(picture.place.left),
         static_cast<int>(picture.place.top), SRCCOPY);
  GdiFlush();
  const auto* const first = static_cast<const DWORD*>(bits);
  picture.points.assign(first, first + static_cast<std::ptrdiff_t>(width) * height);
  SelectObject(memory.get(), before);
  ReleaseDC(nullptr, screen);
  return picture;
}

bool hasCaret(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof(info);
  return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) != FALSE &&
         info.hwndCaret != nullptr && info.hwndCaret == info.hwndFocus;
}

/// Whether where the keyboard is looks otherwise than in the picture, once it is painted.
bool isSeen(HWND window, const Picture& before) {
  constexpr std::chrono::milliseconds kForPainting{3'000};
  const HWND focus = remote::focus(window);
  if (hasCaret(focus)) return true;
  // A focus may be drawn around the control.
  constexpr int kAround = 2;
  RECT place = placeOf(focus);
  InflateRect(&place, kAround, kAround);
  return remote::waitUntil([&] { return pictureOf(window).part(place) != before.part(place); }, kForPainting);
}

}  // namespace

std::vector<HWND> controlsAsRead(HWND window) {
  std::vector<HWND> controls;
  collect(window, controls);
  std::ranges::stable_sort(controls, {}, [](HWND control) { return placeOf(control).top; });
  std::vector<HWND> read;
  while (!controls.empty()) {
    const RECT first = placeOf(controls.front());
    const auto rest = std::stable_partition(controls.begin(), controls.end(), [&](HWND control) {
      return control == controls.front() || areBeside(first, placeOf(control));
    });
    std::stable_sort(controls.begin(), rest,
                     [](HWND one, HWND other) { return placeOf(one).left < placeOf(other).left; });
    read.insert(read.end(), controls.begin(), rest);
    controls.erase(controls.begin(), rest);
  }
  return read;
}

HWND controlWithFocus(HWND window) {
  HWND control = remote::focus(window);
  while (control && control != window && (!isWorked(control) || isOf(GetParent(control), WC_COMBOBOXW))) {
    control = GetParent(control);
  }
  return control && control != window ? standIn(control) : nullptr;
}

std::vector<Stop> walk(HWND window, WORD held) {
  const HWND start = remote::focus(window);
  std::vector<Stop> stops;
  do {
    if (stops.size() == kMostStops) throw std::runtime_error("the Tab key never comes back");
    const HWND from = remote::focus(window);
    // What has lost the keyboard shows it as long as it is not painted.
    if (!remote::shownArea(remote::mainWindow())) throw std::runtime_error("the window is not painted");
    const Picture before = pictureOf(window);
    userinput::press(VK_TAB, held);
    if (!remote::waitUntil([=] { return remote::focus(window) != from; })) {
      throw std::runtime_error("the Tab key stays at " + described(from));
    }
    stops.push_back({controlWithFocus(window), isSeen(window, before)});
  } while (remote::focus(window) != start);
  return stops;
}

std::string described(HWND control) {
  const std::wstring name = className(control);
  return std::string(name.begin(), name.end()) + " " + std::to_string(control ? GetDlgCtrlID(control) : 0);
}

}  // namespace focuswalk
