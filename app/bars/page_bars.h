#pragma once

#include <windows.h>

#include <span>

#include "owners/control_handles.h"
#include "owners/handles.h"
#include "records/availability.h"

/// The rebar of a page: one or two bands with the position box and toolbars.

/// A toolbar button. Its image is the one at its own place in the toolbar's strip.
struct BarButton {
  WORD command;
  const wchar_t* tip;
};

/// A band: the position box, or a toolbar when it has buttons.
struct BandLayout {
  UINT id;
  WORD controlId;
  WORD bitmap;  ///< 0 for the position box
  std::span<const BarButton> buttons;
};

/// The bands of a page from left to right, none for a number that is no page's.
std::span<const BandLayout> pageBands(int page);

/// Where a rebar is put within its parent, whose client area is as given. Its height it then takes from
/// its bands (PageBars::kRebarHeight).
struct RebarPlace {
  int y;
  int width;
  int height;
  bool operator==(const RebarPlace&) const = default;
};

/// `lower` is for a parent that ends with the tabs, which stay free below the rebar; `raise` lifts it by
/// two pixels more.
RebarPlace rebarPlace(SIZE client, bool atTop, bool lower, bool raise);

/// The rebar that is shown at present. One exists at a time.
class PageBars {
 public:
  static constexpr int kRebarId = 1000;
  static constexpr int kPositionId = 1012;
  static constexpr int kRebarHeight = 28;

  /// Destroys the rebar that is there, makes a new one in `parent` and the page's bands in it. What
  /// can't be created is left out together with all that would follow it. The commands of the buttons,
  /// and the question for the position box's colours (WM_CTLCOLORSTATIC), go to `mainWindow`.
  void create(HINSTANCE instance, int page, HWND parent, HWND mainWindow);
  void destroy();
  /// Moves the rebar to its place within `parent`. Nothing happens without one.
  void place(HWND parent, bool lower, bool raise);

  /// Each null when the page has none.
  HWND rebar() const { return rebar_.get(); }
  HWND firstBand() const { return first_.window.get(); }
  HWND secondBand() const { return second_.window.get(); }
  HWND positionBox() const;

  /// What is shown when the mouse rests on the position box; nothing with the empty text.
  void setPositionTip(const wchar_t* text);

  /// Each button enabled, or shown indeterminate.
  void showCommands(const CommandFacts& facts) const;

 private:
  /// The images outlive the toolbar that shows them.
  struct BandWindow {
    UniqueImageList images;
    UniqueWindow window;
  };

  bool createRebar(HINSTANCE instance, HWND parent);
  bool createBand(HINSTANCE instance, const BandLayout& layout, HWND mainWindow, bool onForm,
                  BandWindow& band);
  bool createToolbar(HINSTANCE instance, const BandLayout& layout, HWND mainWindow, BandWindow& band) const;
  void fillRow() const;
  void destroyBand(BandWindow& band) const;

  int page_ = -1;  // whose bands these are
  UniqueWindow rebar_;
  BandWindow first_;
  BandWindow second_;
  UniqueWindow tip_;
};
