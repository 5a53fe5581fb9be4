#pragma once

#include <windows.h>

#include <functional>

#include "base/name_list.h"
#include "base/string.h"
#include "data/handles/import_file.h"
#include "dialogs/exchange/import_more.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// In which the user sees how a file would go into a table, and changes what he wants otherwise. The dialog
/// stores nothing.
class ImportDialog final : private ModalDialog {
 public:
  /// `file` and the names of the tables of the open database outlive the dialog.
  ImportDialog(ImportFile& file, const NameList& tables);

  /// Out, when the result is IDOK: whether the records that can be taken are stored where others can't.
  bool keepsGoodRecords = false;

  /// IDOK or IDCANCEL. After IDOK `file` has all that the user chose. Run again, the dialog shows the same.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void zoomChanged() override;

  void fillLists();
  bool examine();
  void examineOr(const std::function<void()>& takeBack);
  bool tryToExamine();
  void showFound();
  void showColumns();
  void showPreview();
  void showType();
  void typeChosen();
  void tableChosen();
  void tableTyped();
  void focusLeavesTable();
  void tableLeft();
  void encodingChosen();
  void delimiterChosen();
  void headerChosen();
  void replaceChosen();
  void moreChosen();
  ImportDetails details() const;
  void setDetails(const ImportDetails& wanted);
  void nameTable(const String& name);
  String namedTable() const;
  bool isTableTaken() const;
  bool takeTable();
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(int result);

  ImportFile& file_;
  const NameList& tables_;
  String givenTable_;                // which the control was given last, and may show otherwise
  bool isExamined_ = false;          // what the controls show was found, for the table that they name
  bool isFoundForNewTable_ = false;  // the last time
  InputPanelHold panel_;
  DialogGrowth growth_;
};
