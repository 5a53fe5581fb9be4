#pragma once

#include <vector>

#include "base/name_list.h"
#include "base/string.h"
#include "data/values/schema.h"
#include "dialogs/table/field_list.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// "New Table": the name of a new table and its fields. The dialog creates nothing.
class NewTableDialog final : private ModalDialog {
 public:
  /// `tables` are the names of the tables of the open database, which have to outlive the dialog. A
  /// table that is called like one of them is refused.
  explicit NewTableDialog(const NameList& tables);

  /// In: what the dialog shows first. Out, when the result is IDOK: a name that is not taken and has no
  /// forbidden character, and one field at least. Run again, the dialog shows the same design, so that
  /// nothing is lost when the database refuses it.
  String name;
  std::vector<NewField> fields;

  /// Out, when the result is IDOK: the fields as Database::createTable takes them.
  String columns;

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void settingsChanged() override { layOut(); }
  void sized() override { layOut(); }
  void zoomChanged() override { list_.fitColumns(); }

  void addField();
  void removeField() { list_.removeSelected(); }
  void moveFieldUp() { list_.moveSelectedUp(); }
  void moveFieldDown() { list_.moveSelectedDown(); }
  void confirm();
  void cancel() { leave(IDCANCEL); }
  void leave(int result);

  void refuseName(const wchar_t* reason) const;
  void layOut() const;

  const NameList& tables_;
  FieldList list_;
  DialogGrowth growth_;
  InputPanelHold panel_;
};
