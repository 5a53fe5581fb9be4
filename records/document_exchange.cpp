// Records between the open database and other files.
#include <algorithm>
#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "data/handles/import_file.h"
#include "records/count_text.h"
#include "records/document.h"

namespace {

/// As people call it.
std::wstring nameOfFormat(const String& format) {
  if (std::wcscmp(format.text(), L"jsonl") == 0) return L"JSON, a record a line,";
  String name = format;
  name.toUpperCase();
  return name.text();
}

bool isSame(const String& one, const String& other) {
  return std::wcscmp(one.text(), other.text()) == 0;
}

/// What can be written out: what is in use, as it is shown and whole, then the other tables and queries.
class ExportSources {
 public:
  enum class Kind {
    asShown,  ///< what is in use, in its order and as far as it is shown
    table,
    queryInUse,
    savedQuery,
  };

  ExportSources(const RecordSource& inUse, const NameList& tables, const NameList& queries) {
    const String& name = inUse.isQuery() ? inUse.queryName() : inUse.tableName();
    if (!inUse.arrangement().isEmpty()) add(name, L" (as shown)", Kind::asShown);
    if (inUse.isQuery()) {
      add(name, L" (query, in use)", Kind::queryInUse);
    } else {
      add(name, L" (in use)", Kind::table);
    }
    for (std::uint32_t i = 0; i < tables.size(); ++i) {
      if (!inUse.isTable(tables[i])) add(tables[i], L"", Kind::table);
    }
    for (std::uint32_t i = 0; i < queries.size(); ++i) {
      const bool isInUse = inUse.isQuery() && isSame(inUse.queryName(), queries[i]);
      if (!isInUse) add(queries[i], L" (query)", Kind::savedQuery, i);
    }
  }

  const NameList& shownNames() const { return shown_; }
  const String& name(std::uint32_t place) const { return names_[place]; }
  Kind kind(std::uint32_t place) const { return places_[place].kind; }
  /// Of a saved query its place among them.
  std::uint32_t savedPlace(std::uint32_t place) const { return places_[place].saved; }

 private:
  struct Place {
    Kind kind;
    std::uint32_t saved;
  };

  void add(const String& name, const wchar_t* remark, Kind kind, std::uint32_t savedPlace = 0) {
    shown_.append((std::wstring(name.text()) + remark).c_str());
    names_.append(name);
    places_.push_back({kind, savedPlace});
  }

  NameList shown_;
  NameList names_;
  std::vector<Place> places_;
};

}  // namespace

// ---- Export

void Document::exportRecords() {
  if (wanted_.isNone() || !settleTyped()) return;
  ExportedRecords records;
  if (!chooseExported(records)) return;
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::exportTo);
  if (!path) return;
  ExportCounts counts;
  const Outcome exported = database_.exportRecords(records, *path, counts);
  if (!exported) {
    tellNotExported(exported);
    return;
  }
  std::wstring text = countOfRecords(counts.records) + L" exported as " + nameOfFormat(counts.format) +
                      L" to\n" + path->text();
  if (counts.changed != 0) {
    text += L"\n\nValues that will not come back as they are: " + std::to_wstring(counts.changed);
  }
  pages_.prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

/// False when the user cancels, or a query can't be read, which was told.
bool Document::chooseExported(ExportedRecords& records) {
  NameList queries;
  Outcome read;
  database_.listQueries(queries, &read);
  // Where nothing was kept yet there is nothing to be read.
  if (!read && tableNames_.holds(kQueriesTable)) {
    tellFailure(L"The queries could not be listed.", read.reason());
  }
  const ExportSources sources(wanted_, tableNames_, queries);
  const std::optional<std::uint32_t> place = pages_.prompts.chooseSource(sources.shownNames());
  if (!place) return false;
  records.name = sources.name(*place);
  records.isTable = false;
  switch (sources.kind(*place)) {
    case ExportSources::Kind::asShown:
      records.source = wanted_.sqlText();
      return true;
    case ExportSources::Kind::table:
      records.isTable = true;
      records.source = records.name;
      return true;
    case ExportSources::Kind::queryInUse:
      records.source = wanted_.plainSql();
      return true;
    case ExportSources::Kind::savedQuery:
      break;
  }
  SavedQuery query;
  // Another program may have deleted it meanwhile.
  if (!database_.getQuery(sources.savedPlace(*place), query) || !isSame(query.name, records.name)) {
    tellNotExported(Outcome::failure(kGoneElsewhere));
    return false;
  }
  records.source = query.sql;
  return true;
}

void Document::tellNotExported(const Outcome& failure) {
  tellFailure(L"The records could not be exported.", failure.reason());
}

Outcome Document::readChosenRow(std::wstring& text) {
  if (viewMode_ != ViewMode::list || openRecordCount() == 0) return {};
  return database_.readRowText(pages_.grid.selectedRow(), text);
}

// ---- Import

std::unique_ptr<ImportFile> Document::openImport(const String& path) {
  std::unique_ptr<ImportFile> file;
  if (!database_.isOpen() || !settleTyped()) return file;
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
  if (stored) {
    readTables();
  } else {
    tellFailure(L"The file could not be imported.", stored.reason());
    // What kept the file out may keep the tables from being listed, too.
    database_.listTables(tableNames_);
  }
  showEverythingAnew(file.table());
  standAgainAt(position);
  return static_cast<bool>(stored);
}

/// The catalogue and the records may have become others. The page stays; on the Tables page the table is
/// chosen.
void Document::showEverythingAnew(const String& table) {
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
