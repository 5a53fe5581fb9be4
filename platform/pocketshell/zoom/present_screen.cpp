#include "platform/pocketshell/zoom/present_screen.h"

#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

SIZE workArea = kLeastWorkArea;

}  // namespace

SIZE presentWorkArea() {
  return workArea;
}

SIZE presentScreen() {
  return {workArea.cx, workArea.cy + kCaptionHeight};
}

void setPresentWorkArea(SIZE area) {
  workArea = area;
}

SIZE workAreaInside(SIZE monitor, int zoom) {
  return {coveringFigure(static_cast<int>(monitor.cx), zoom),
          coveringFigure(static_cast<int>(monitor.cy), zoom)};
}

}  // namespace pocketshell
