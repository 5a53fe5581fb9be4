// In which order the records are shown, and which of them.
#include <algorithm>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "base/kept_texts.h"
#include "base/wait_cursor.h"
#include "data/values/field_kinds.h"
#include "records/arrangement/column_figures.h"
#include "records/document.h"

namespace {

/// A value that a person compares with is shorter.
constexpr std::uint32_t kMostLiteralBytes = 10'000;
constexpr std::size_t kMostShownCount = 60;

/// Also where texts may stand beside other values.
bool mayHaveLetters(FieldType type) {
  switch (type) {
    case FieldType::varWChar:
    case FieldType::longVarWChar:
    case FieldType::varBinary:
    case FieldType::longVarBinary:
      return true;
    default:
      return false;
  }
}

bool looksAtAllFields(const Arrangement& arrangement) {
  return std::any_of(arrangement.conditions().begin(), arrangement.conditions().end(),
                     [](const Arrangement::Condition& condition) { return !condition.field; });
}

std::wstring beginningOf(std::wstring text) {
  for (wchar_t& unit : text) {
    if (unit < L' ') unit = L' ';
  }
  if (text.size() > kMostShownCount) text = text.substr(0, kMostShownCount) + L"...";
  return text;
}

}  // namespace

Arrangement::Letters Document::lettersOf(std::uint32_t field) const {
  return mayHaveLetters(fieldType(field)) ? Arrangement::Letters::ignoreCase
                                          : Arrangement::Letters::asTheyAre;
}

bool Document::canContainText(std::uint32_t field) const {
  return fieldKind(fieldType(field)).isSearched;
}

std::vector<std::wstring> Document::searchedFields() const {
  std::vector<std::wstring> fields;
  for (std::uint32_t field = 0; field < database_.fieldCount(); ++field) {
    if (canContainText(field)) fields.emplace_back(database_.fieldName(field).text());
  }
  return fields;
}

// ---- What was chosen for a table or query before

void Document::chooseTable(const String& name) {
  wanted_.chooseTable(name);
  arrangeAsBefore();
}

void Document::chooseQuery(const String& name, const String& sql, const String& table) {
  wanted_.chooseQuery(name, sql, table);
  arrangeAsBefore();
}

const String& Document::sourceName() const {
  return wanted_.isQuery() ? wanted_.queryName() : wanted_.tableName();
}

void Document::arrangeAsBefore() {
  const std::wstring kept = kepttexts::read(databasePath_.text(), wanted_.isQuery(), sourceName().text());
  Arrangement arrangement = Arrangement::ofText(kept);
  if (arrangement.isEmpty()) return;
  std::vector<std::wstring> fields;
  if (looksAtAllFields(arrangement)) {
    std::vector<Database::FieldDescription> all;
    const std::wstring none = Arrangement::withoutRecords(wanted_.plainSql().text());
    // Without them no record would seem to fit.
    if (!database_.describeFields(String(none.c_str()), all)) return;
    for (const Database::FieldDescription& field : all) {
      if (fieldKind(field.type).isSearched) fields.emplace_back(field.name.text());
    }
  }
  wanted_.arrange(std::move(arrangement), fields);
}

void Document::keepArrangement() const {
  const Arrangement& arrangement = wanted_.arrangement();
  kepttexts::write(databasePath_.text(), wanted_.isQuery(), sourceName().text(),
                   arrangement.isEmpty() ? std::wstring() : arrangement.toText());
}

/// Another program may have renamed or deleted a field by which the records are ordered.
Outcome Document::openArranged() {
  Outcome opened = database_.openRecordset(wanted_.sqlText());
  const bool maySuitNoLonger = opened.cause() == Outcome::Cause::other && !wanted_.arrangement().isEmpty();
  if (opened || !maySuitNoLonger) return opened;
  const String reason = opened.reason();
  Outcome plain = database_.openRecordset(wanted_.plainSql());
  if (!plain) return plain;
  wanted_.arrange({}, {});
  keepArrangement();
  unfittingArrangement_ = reason;
  return plain;
}

void Document::tellUnfittingArrangement() {
  if (unfittingArrangement_.isEmpty()) return;
  const String reason = unfittingArrangement_;
  unfittingArrangement_.clear();
  tellFailure(L"The order and filter don't fit the records any more, so all are shown.", reason);
}

// ---- What is chosen now

bool Document::arrange(Arrangement arrangement) {
  if (!recordsetOpen_ || !showsRecords(viewMode_)) return false;
  const bool isOnForm = viewMode_ == ViewMode::form;
  if (!settleTyped()) return false;
  const std::uint32_t former =
      isOnForm ? (shown_.isEmpty() ? currentRecord : shown_.position()) : pages_.grid.selectedRow() + 1;
  RecordSource wanted = wanted_;
  wanted.arrange(std::move(arrangement), searchedFields());
  std::uint32_t position = 0;
  bool hasOtherFields = false;
  if (const Outcome opened = openInPlace(wanted, former, position, hasOtherFields); !opened) {
    if (opened.cause() == Outcome::Cause::stopped) return false;
    tellFailure(L"The records could not be ordered or filtered.", opened.reason());
    return false;
  }
  const bool formFits = formGeneration_ == openGeneration_ && !hasOtherFields;
  wanted_ = std::move(wanted);
  openGeneration_ = wanted_.generation();
  formGeneration_ = formFits ? openGeneration_ : RecordSource::kNeverChosen;
  keepArrangement();
  showArranged(position);
  return true;
}

Outcome Document::openInPlace(const RecordSource& wanted, std::uint32_t former, std::uint32_t& position,
                              bool& hasOtherFields) {
  const WaitCursor wait;
  return database_.openInPlace(wanted.sqlText(), former, position, hasOtherFields);
}

/// The record that was current before is so again if it is still among them, else the first.
void Document::showArranged(std::uint32_t position) {
  shown_ = {};
  chosenRow_ = {};
  recordCount = database_.recordCount();
  currentRecord = recordCount == 0 ? 0 : std::max(position, 1u);
  const ViewMode mode = viewMode_;
  if (mode == ViewMode::list) {
    pages_.grid.fill();
    updateCommandBar();
    rowChosen();
    return;
  }
  const std::uint32_t wanted = currentRecord;
  setViewMode(ViewMode::none);
  currentRecord = wanted;
  repositionFromList_ = true;
  setViewMode(mode);
}

Outcome Document::readChosenValue(std::uint32_t field, Arrangement::Condition& condition) {
  const std::uint32_t row = pages_.grid.selectedRow();
  String shown;
  std::wstring literal;
  if (viewMode_ != ViewMode::list || openRecordCount() == 0)
    return Outcome::failure(L"There are no records.");
  if (Outcome read = database_.readForList(row, field, shown); !read) return read;
  if (Outcome read = database_.readLiteral(row, field, kMostLiteralBytes, literal); !read) return read;
  condition = {};
  condition.field = fieldName(field).text();
  condition.letters = lettersOf(field);
  if (fieldKind(fieldType(field)).editor == FieldEditorKind::checkBox) {
    const bool isTrue = std::wcscmp(shown.text(), L"-1") == 0;
    condition.test = isTrue ? Arrangement::Test::isTrue : Arrangement::Test::isFalse;
  } else if (literal == L"NULL" || literal == L"''" || literal == L"X''") {
    condition.test = Arrangement::Test::empty;
  } else {
    condition.test = Arrangement::Test::equal;
    condition.value = literal;
    condition.shown = beginningOf(shown.text());
  }
  return {};
}

void Document::calculate(std::uint32_t field) {
  if (!recordsetOpen_ || viewMode_ != ViewMode::list || field >= database_.fieldCount()) return;
  ColumnKind kind = ColumnKind::values;
  const FieldEditorKind editor = fieldKind(fieldType(field)).editor;
  if (editor == FieldEditorKind::date) kind = ColumnKind::dates;
  if (editor == FieldEditorKind::checkBox) kind = ColumnKind::truth;
  const std::wstring name = fieldName(field).text();
  const std::wstring sql = figuresSql(wanted_.sqlText().text(), name, kind);
  std::vector<std::wstring> values;
  const Outcome read = readFigures(String(sql.c_str()), values);
  if (read.cause() == Outcome::Cause::stopped) return;
  if (!read) {
    tellFailure(L"The column could not be calculated.", read.reason());
    return;
  }
  for (std::wstring& value : values) value = beginningOf(std::move(value));
  const std::wstring text = L"Column '" + name + L"'\n\n" + figuresText(kind, values);
  pages_.prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

Outcome Document::readFigures(const String& sql, std::vector<std::wstring>& values) {
  const WaitCursor wait;
  return database_.readFirst(sql, values);
}

Outcome Document::tryQuery(const String& sql) {
  return database_.trySql(sql);
}

bool Document::keepQuery(const SavedQuery& query) {
  if (!canChangeFile()) return false;
  Outcome added;
  database_.addQuery(query, &added);
  if (!added) {
    tellFailure(std::wstring(L"Query '") + query.name.text() + L"' could not be stored.", added.reason());
    return false;
  }
  // The first query makes the table that they are kept in.
  readTables();
  reselectTable_ = true;
  return true;
}
