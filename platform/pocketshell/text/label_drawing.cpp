#include "platform/pocketshell/text/label_drawing.h"

#include <algorithm>
#include <string>

#include "owners/handles.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_lines.h"

namespace pocketshell {

namespace {

std::wstring shownText(HWND label) {
  const bool asItIs = (GetWindowLongPtrW(label, GWL_STYLE) & SS_NOPREFIX) != 0;
  return asItIs ? windowText(label) : withoutAccessMarks(windowText(label));
}

bool holdsText(HWND label) {
  switch (GetWindowLongPtrW(label, GWL_STYLE) & SS_TYPEMASK) {
    case SS_LEFT:
    case SS_CENTER:
    case SS_SIMPLE:
    case SS_LEFTNOWORDWRAP:
      return true;
    default:
      return false;
  }
}

bool breaksLines(HWND label) {
  const LONG_PTR type = GetWindowLongPtrW(label, GWL_STYLE) & SS_TYPEMASK;
  return type == SS_LEFT || type == SS_CENTER;
}

RECT clientOf(HWND label) {
  RECT client{};
  GetClientRect(label, &client);
  return client;
}

bool hasRoomForLines(HDC dc, HWND label) {
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc, &metrics);
  return clientOf(label).bottom >= 2 * metrics.tmHeight;
}

/// The control would break it, and show of the next line the upper edge.
bool isTooLongForItsLine(HDC dc, HWND label, const std::wstring& text) {
  return breaksLines(label) && !hasRoomForLines(dc, label) &&
         textLineWidth(dc, text) > static_cast<int>(clientOf(label).right);
}

bool needsDrawing(HWND label) {
  if (!holdsText(label)) return false;
  const UniqueWindowDc dc(label);
  const ControlFont font(dc.dc(), label);
  const std::wstring text = shownText(label);
  return needsOtherFonts(dc.dc(), text) || isTooLongForItsLine(dc.dc(), label, text);
}

}  // namespace

void LabelDrawing::drawInto(HDC dc) {
  RECT client = clientOf(window());
  const ControlFont font(dc, window());
  const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(GetParent(window()), WM_CTLCOLORSTATIC,
                                                           reinterpret_cast<WPARAM>(dc),
                                                           reinterpret_cast<LPARAM>(window())));
  FillRect(dc, &client, brush ? brush : GetSysColorBrush(COLOR_BTNFACE));
  const LONG_PTR type = GetWindowLongPtrW(window(), GWL_STYLE) & SS_TYPEMASK;
  const LinePlace where = type == SS_CENTER ? LinePlace::centre : LinePlace::left;
  if (!IsWindowEnabled(window())) SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
  if (breaksLines(window()) && hasRoomForLines(dc, window())) {
    drawTextLines(dc, shownText(window()), client, where);
    return;
  }
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc, &metrics);
  client.bottom = std::min(client.bottom, client.top + metrics.tmHeight);
  drawTextLine(dc, shownText(window()), client, where);
}

/// False when the control draws by itself. Whoever wants a picture sends the context to draw into.
bool LabelDrawing::draw(HDC given) {
  if (!needsDrawing(window())) return false;
  if (given) {
    drawInto(given);
    return true;
  }
  PAINTSTRUCT paint{};
  const HDC dc = BeginPaint(window(), &paint);
  if (dc) drawInto(dc);
  EndPaint(window(), &paint);
  return true;
}

LRESULT LabelDrawing::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool drawing = message == WM_PAINT || message == WM_PRINTCLIENT;
  if (drawing && draw(reinterpret_cast<HDC>(wParam))) return 0;
  const LRESULT answered = passOn(message, wParam, lParam);
  // Some systems' labels draw at once when one of these comes.
  const bool drewItself = message == WM_SETTEXT || message == WM_ENABLE || message == WM_SETFONT;
  if (drewItself && needsDrawing(window())) InvalidateRect(window(), nullptr, TRUE);
  return answered;
}

}  // namespace pocketshell
