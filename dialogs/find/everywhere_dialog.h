#pragma once

#include <functional>
#include <vector>

#include "base/string.h"
#include "records/found_places.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// Asks for a text, shows the places where it is found in any table as they come, and ends with the one that
/// the user wants to go to.
class EverywhereDialog final : private ModalDialog {
 public:
  /// More places are of no use to anybody.
  static constexpr std::size_t kMostPlaces = 1000;

  /// Searches all tables, telling each place; false when it was stopped before the end.
  using Search = std::function<bool(const String& text, const FoundListener& found)>;

  explicit EverywhereDialog(Search search);

  /// IDOK or IDCANCEL.
  int run(HWND owner);

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  FoundPlace chosen;  ///< out: where to go, when the result is IDOK
  String text;        ///< in: what stands there at first; out: what was found there
                      // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override;
  void search();
  bool show(const FoundPlace& place);
  void confirm();
  void cancel();

  Search search_;
  std::vector<FoundPlace> places_;
  String searched_;
  bool isSearching_ = false;
  InputPanelHold panel_;
  DialogGrowth growth_;
};
