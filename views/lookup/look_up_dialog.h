#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/database/look_up_records.h"
#include "owners/handles.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// The dialog in which a record of another table is chosen, whose key the field then has. Its list narrows
/// while the user types. However many records there are, he never waits for it: the search goes on between
/// his keys.
class LookUpDialog final : private ModalDialog {
 public:
  /// `caption` names the field.
  LookUpDialog(std::wstring caption, std::unique_ptr<LookUpRecords> records);

  /// Runs the dialog over `owner`. The key of the chosen record; none when the user cancels.
  std::optional<String> run(HWND owner);

 private:
  static LRESULT CALLBACK editProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR dialog) noexcept;

  void opened() override;
  bool command(WORD id, WORD notification) override;
  bool notified(NMHDR& notification) override;
  void timerFired() override;
  void ended() override;
  void sized() override;
  void textChanged();
  void goOn();
  void confirm();
  void cancel() { close(IDCANCEL); }

  int selectedItem() const;
  std::uint32_t shownCount() const;
  std::optional<std::uint32_t> rowOf(int item) const;
  void showCount();
  void setColumnWidths() const;
  void giveText(LVITEMW& item);
  void moveSelection(WPARAM key) const;

  std::wstring caption_;
  std::unique_ptr<LookUpRecords> records_;
  DialogGrowth growth_;
  bool isNarrowed_ = false;
  bool isSearching_ = false;
  Outcome failure_;                       // of the search
  std::vector<std::uint32_t> found_;      // rows, while it is narrowed
  std::optional<std::uint32_t> lastRow_;  // that was read last
  LookUpRecord last_;
  std::optional<String> chosen_;
};
