#pragma once

#include <windows.h>

#include <commctrl.h>

#include "platform/pocketshell/handheld_windows.h"

/// The messages of a rebar, typed. Bands are counted from 0.
namespace rebar {

/// What the edges of a band add to the height of its window, at every zoom.
inline constexpr int kBandEdges = 4;

/// How high the window of a band is in the monitor's pixels, of which the edges, that don't grow with the
/// zoom, leave it what they don't need.
inline int childHeight(int handheldHeight) {
  return HandheldToMonitor(handheldHeight + kBandEdges) - kBandEdges;
}

/// A band of fixed size with a window in it. Lengths are in handheld pixels.
struct Band {
  UINT id;
  HWND child;
  int minimumWidth;
  int minimumHeight;
  int width;
  bool namesImage;  ///< says outright that it has no image
};

/// Behind the bands that are there. The window becomes the rebar's child.
inline bool appendBand(HWND rebar, const Band& band) {
  REBARBANDINFOW info{};
  info.cbSize = REBARBANDINFOW_V6_SIZE;
  info.fMask = RBBIM_STYLE | RBBIM_CHILD | RBBIM_CHILDSIZE | RBBIM_SIZE | RBBIM_ID;
  info.fStyle = RBBS_FIXEDSIZE | RBBS_CHILDEDGE;
  info.hwndChild = band.child;
  info.cxMinChild = static_cast<UINT>(HandheldToMonitor(band.minimumWidth));
  info.cyMinChild = static_cast<UINT>(childHeight(band.minimumHeight));
  info.cx = static_cast<UINT>(HandheldToMonitor(band.width));
  info.wID = band.id;
  if (band.namesImage) {
    info.fMask |= RBBIM_IMAGE;
    info.iImage = -1;
  }
  return SendMessageW(rebar, RB_INSERTBANDW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&info)) != 0;
}

/// In the monitor's pixels, as is all that follows.
inline RECT bandRectangle(HWND rebar, UINT index) {
  RECT place{};
  SendMessageW(rebar, RB_GETRECT, index, reinterpret_cast<LPARAM>(&place));
  return place;
}

/// What a band needs on each side of its window.
inline RECT bandBorders(HWND rebar, UINT index) {
  RECT borders{};
  SendMessageW(rebar, RB_GETBANDBORDERS, index, reinterpret_cast<LPARAM>(&borders));
  return borders;
}

inline void setBandWidth(HWND rebar, UINT index, LONG width) {
  REBARBANDINFOW info{};
  info.cbSize = REBARBANDINFOW_V6_SIZE;
  info.fMask = RBBIM_SIZE;
  info.cx = static_cast<UINT>(width);
  SendMessageW(rebar, RB_SETBANDINFOW, index, reinterpret_cast<LPARAM>(&info));
}

inline void showBand(HWND rebar, UINT index) {
  SendMessageW(rebar, RB_SHOWBAND, index, TRUE);
}

inline void deleteBand(HWND rebar, UINT index) {
  SendMessageW(rebar, RB_DELETEBAND, index, 0);
}

}  // namespace rebar
