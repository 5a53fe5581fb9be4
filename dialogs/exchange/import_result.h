#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/string.h"
#include "data/handles/import_file.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// What the dialog of an import's result needs of the program. All of it is set, and lasts as long as the
/// dialog runs.
struct ImportResultHost {
  /// The user chooses the file that the list goes into; none when he cancels.
  std::function<std::optional<String>()> chooseFile;
  /// Writes all records that were left out into it.
  std::function<Outcome(const String& path)> saveList;
};

/// What came of an import that could not take all records.
class ImportResultDialog final : private ModalDialog {
 public:
  /// `text` says what was stored; the records are the first of those that were left out, `all` how many of
  /// them there are.
  ImportResultDialog(std::wstring text, std::vector<RejectedRecord> records, std::int64_t all,
                     ImportResultHost host);

  void run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void zoomChanged() override { makeRoomForReasons(); }
  void makeRoomForReasons() const;
  void saveList();
  void finish() { close(IDOK); }

  std::wstring text_;
  std::vector<RejectedRecord> records_;
  std::int64_t all_;
  ImportResultHost host_;
  DialogGrowth growth_;
};
