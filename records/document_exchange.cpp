// Records between the open database and other files.
#include <algorithm>
#include <optional>
#include <string>

#include "data/handles/import_file.h"
#include "records/count_text.h"
#include "records/document.h"

// ---- Export

void Document::exportRecords() {
  if (wanted_.isNone() || !settleRecord()) return;
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::exportTo);
  if (!path) return;
  ExportedRecords records;
  records.isTable = wanted_.isTable();
  records.source = records.isTable ? wanted_.tableName() : wanted_.sqlText();
  records.name = records.isTable ? wanted_.tableName() : wanted_.queryName();
  ExportCounts counts;
  const Outcome exported = database_.exportRecords(records, *path, counts);
  if (!exported) {
    tellFailure(L"The records could not be exported.", exported.reason());
    return;
  }
  std::wstring text = countOfRecords(counts.records) + L" exported to\n" + path->text();
  if (counts.changed != 0) {
    text += L"\n\nValues that are not made of characters, and will not come back as they are: " +
            std::to_wstring(counts.changed);
  }
  pages_.prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

Outcome Document::readChosenRow(std::wstring& text) {
  if (viewMode_ != ViewMode::list || openRecordCount() == 0) return {};
  return database_.readRowText(pages_.grid.selectedRow(), text);
}

// ---- Import

std::unique_ptr<ImportFile> Document::openImport(const String& path) {
  std::unique_ptr<ImportFile> file;
  if (!database_.isOpen() || !settleRecord()) return file;
  if (const Outcome opened = database_.openImport(path, file); !opened) {
    tellFailure(std::wstring(L"File ") + path.text() + L" could not be opened.", opened.reason());
  }
  return file;
}

bool Document::runImport(ImportFile& file, bool keepsGood, ImportCounts& counts) {
  if (!canChangeFile()) return false;
  const std::uint32_t position = shown_.isEmpty() ? currentRecord : shown_.position();
  closeRecords();
  const Outcome stored = file.run(keepsGood, counts);
  showEverythingAnew(file.table());
  standAgainAt(position);
  if (!stored) tellFailure(L"The file could not be imported.", stored.reason());
  return static_cast<bool>(stored);
}

/// The catalogue and the records may have become others. The page stays; on the Tables page the table is
/// chosen.
void Document::showEverythingAnew(const String& table) {
  readTables();
  const ViewMode mode = viewMode_;
  if (mode == ViewMode::tables) {
    fillTables(Positioning::byName, table);
    openTableSelection(pages_.tables->selectedIndex());
  } else {
    reselectTable_ = true;
  }
  if (showsRecords(mode)) {
    setViewMode(ViewMode::none);
    setViewMode(mode);
  }
  updateCommandBar();
}

/// Records that were added stand behind those that the user had before him.
void Document::standAgainAt(std::uint32_t position) {
  const std::uint32_t wanted = std::min(position, openRecordCount());
  if (wanted <= 1) return;
  if (viewMode_ == ViewMode::list) {
    selectInGrid(wanted);
  } else if (viewMode_ == ViewMode::form && database_.moveTo(wanted)) {
    loadRecord();
    updateNavigationState();
  }
}
