#include "platform/pocketshell/zoom/present_zoom.h"

#include <algorithm>
#include <shellscalingapi.h>

#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

const wchar_t* const kFontFace = L"Tahoma";

namespace {

constexpr int kFontPoints = 8;
constexpr int kNormalDotsPerInch = 96;
constexpr int kPointsPerInch = 72;

UniqueFont makeFont(int zoom) {
  LOGFONTW description{};
  description.lfHeight = -fontHeight(zoom);
  description.lfWeight = FW_NORMAL;
  description.lfCharSet = DEFAULT_CHARSET;
  description.lfPitchAndFamily = FF_SWISS;
  lstrcpynW(description.lfFaceName, kFontFace, LF_FACESIZE);
  return UniqueFont(CreateFontIndirectW(&description));
}

int zoomAtStart() {
  const int chosen = readZoomSetting();
  return chosen != 0 ? chosen : zoomOfMonitor(MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY));
}

struct Present {
  int zoom = zoomAtStart();
  UniqueFont font = makeFont(zoom);
};

Present& present() {
  static Present only;
  return only;
}

}  // namespace

int presentZoom() {
  return present().zoom;
}

HFONT presentFont() {
  return present().font.get();
}

UniqueFont changePresentZoom(int percent) {
  Present& now = present();
  now.zoom = percent;
  return std::exchange(now.font, makeFont(percent));
}

int zoomOfMonitor(HMONITOR monitor) {
  UINT horizontal = kNormalDotsPerInch;
  UINT vertical = kNormalDotsPerInch;
  if (FAILED(GetDpiForMonitor(monitor, MDT_EFFECTIVE_DPI, &horizontal, &vertical))) {
    vertical = kNormalDotsPerInch;
  }
  MONITORINFO information{};
  information.cbSize = sizeof(information);
  if (!GetMonitorInfoW(monitor, &information)) return kNormalZoom;
  const RECT& area = information.rcWork;
  return automaticZoom(static_cast<int>(vertical), {area.right - area.left, area.bottom - area.top},
                       shellFrameSize());
}

int fontHeight(int zoom) {
  return MulDiv(kFontPoints * zoom, kNormalDotsPerInch, kPointsPerInch * kNormalZoom);
}

}  // namespace pocketshell
