#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "base/string.h"
#include "data/handles/database_copy.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// Lists the former states of databases, and ends with the one that the user chose and what is to be done
/// with it.
class GoBackDialog final : private ModalDialog {
 public:
  enum class Choice {
    look,      ///< it is opened to be looked at; without a copy the present state is
    putBack,   ///< it takes the place of the database
    putTable,  ///< one of its tables comes back
  };
  /// The copies of a database, newest first.
  using Copies = std::function<std::vector<DatabaseCopy>(const String& database)>;

  /// `databases`, which outlives the dialog, has the one first that is chosen at first. With `isLooking` a
  /// copy of that one is open, and the way to its present state is offered.
  GoBackDialog(const std::vector<String>& databases, bool isLooking, Copies copies);

  /// IDOK or IDCANCEL.
  int run(HWND owner);

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  Choice choice = Choice::look;  ///< out, like those below, when the result is IDOK
  String database;
  bool isPresent = false;  ///< the present state was chosen, and `copy` says nothing
  DatabaseCopy copy;
  // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  bool notified(NMHDR& notification) override;
  void sized() override;
  void fill();
  void look() { choose(Choice::look); }
  void putBack() { choose(Choice::putBack); }
  void putTable() { choose(Choice::putTable); }
  void choose(Choice wanted);
  void cancel() { close(IDCANCEL); }

  const std::vector<String>& databases_;
  bool isLooking_;
  Copies copies_;
  std::vector<DatabaseCopy> listed_;
  bool hasPresent_ = false;  // the first row is the present state
  DialogGrowth growth_;
};
