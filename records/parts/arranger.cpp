#include "records/parts/arranger.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "base/settings/kept_texts.h"
#include "base/wait_cursor.h"
#include "data/values/field_kinds.h"
#include "records/arrangement/column_figures.h"

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

ServerValues serverValues(FieldType type) {
  switch (type) {
    case FieldType::real:
      return ServerValues::real;
    case FieldType::varBinary:
    case FieldType::longVarBinary:
      return ServerValues::bytes;
    case FieldType::varWChar:
    case FieldType::longVarWChar:
      return ServerValues::text;
    default:
      return ServerValues::whole;
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

Arrangement::Letters Arranger::lettersOf(std::uint32_t field) const {
  return mayHaveLetters(document().fieldType(field)) ? Arrangement::Letters::ignoreCase
                                                     : Arrangement::Letters::asTheyAre;
}

bool Arranger::canContainText(std::uint32_t field) const {
  return fieldKind(document().fieldType(field)).isSearched;
}

std::vector<std::wstring> Arranger::searchedFields() const {
  std::vector<std::wstring> fields;
  for (std::uint32_t field = 0; field < database().fieldCount(); ++field) {
    if (canContainText(field)) fields.emplace_back(database().fieldName(field).text());
  }
  return fields;
}

// ---- What was chosen for a table or query before

const String& Arranger::sourceName() const {
  return wanted().isQuery() ? wanted().queryName() : wanted().tableName();
}

void Arranger::recall() const {
  const std::wstring kept =
      kepttexts::read(document().databasePath().text(), wanted().isQuery(), sourceName().text());
  Arrangement arrangement = Arrangement::ofText(kept);
  if (arrangement.isEmpty()) return;
  std::vector<std::wstring> fields;
  if (looksAtAllFields(arrangement)) {
    std::vector<Database::FieldDescription> all;
    const std::wstring none = Arrangement::withoutRecords(wanted().plainSql().text());
    // Without them no record would seem to fit.
    if (!database().describeFields(String(none.c_str()), all)) return;
    for (const Database::FieldDescription& field : all) {
      if (fieldKind(field.type).isSearched) fields.emplace_back(field.name.text());
    }
  }
  wanted().arrange(std::move(arrangement), fields);
}

void Arranger::keep() const {
  const Arrangement& arrangement = wanted().arrangement();
  kepttexts::write(document().databasePath().text(), wanted().isQuery(), sourceName().text(),
                   arrangement.isEmpty() ? std::wstring() : arrangement.toText());
}

/// Another program may have renamed or deleted a field by which the records are ordered. What fails for
/// another reason, as by a connection that was lost, says nothing of the order and filter.
Outcome Arranger::openRecords() {
  Outcome opened = database().openRecordset(wanted().sqlText());
  if (opened.cause() != Outcome::Cause::notFitting || wanted().arrangement().isEmpty()) return opened;
  const String reason = opened.reason();
  Outcome plain = database().openRecordset(wanted().plainSql());
  if (!plain) return plain;
  wanted().arrange({}, {});
  keep();
  unfitting_ = reason;
  return plain;
}

void Arranger::tellUnfitting() {
  if (unfitting_.isEmpty()) return;
  const String reason = unfitting_;
  unfitting_.clear();
  tellFailure(L"The order and filter don't fit the records any more, so all are shown.", reason);
}

// ---- What is chosen now

bool Arranger::arrange(Arrangement arrangement) const {
  if (!document().isRecordsetOpen() || !showsRecords(document().viewMode())) return false;
  const bool isOnForm = document().viewMode() == ViewMode::form;
  if (!document().settleTyped()) return false;
  const std::uint32_t former =
      isOnForm ? (shown().isEmpty() ? currentRecord : shown().position()) : pages().grid.selectedRow() + 1;
  RecordSource source = wanted();
  source.arrange(std::move(arrangement), searchedFields());
  std::uint32_t position = 0;
  bool hasOtherFields = false;
  if (const Outcome opened = openInPlace(source, former, position, hasOtherFields); !opened) {
    if (opened.cause() == Outcome::Cause::stopped) return false;
    tellFailure(L"The records could not be ordered or filtered.", opened.reason());
    return false;
  }
  takeOverOpened(std::move(source), hasOtherFields);
  keep();
  show(position);
  return true;
}

Outcome Arranger::openInPlace(const RecordSource& source, std::uint32_t former, std::uint32_t& position,
                              bool& hasOtherFields) const {
  const WaitCursor wait;
  return database().openInPlace(source.sqlText(), former, position, hasOtherFields);
}

/// The record that was current before is so again if it is still among them, else the first.
void Arranger::show(std::uint32_t position) const {
  shown() = {};
  chosenRow() = {};
  recordCount = database().recordCount();
  currentRecord = recordCount == 0 ? 0 : std::max(position, 1u);
  const ViewMode mode = document().viewMode();
  if (mode == ViewMode::list) {
    pages().grid.fill();
    document().updateCommandBar();
    document().rowChosen();
    return;
  }
  const std::uint32_t place = currentRecord;
  document().setViewMode(ViewMode::none);
  currentRecord = place;
  formFollows();
  document().setViewMode(mode);
}

Outcome Arranger::readChosenValue(std::uint32_t field, Arrangement::Condition& condition) const {
  const std::uint32_t row = pages().grid.selectedRow();
  String shown;
  std::wstring literal;
  if (document().viewMode() != ViewMode::list || openRecordCount() == 0)
    return Outcome::failure(L"There are no records.");
  if (Outcome read = database().readForList(row, field, shown); !read) return read;
  if (Outcome read = database().readLiteral(row, field, kMostLiteralBytes, literal); !read) return read;
  condition = {};
  condition.field = document().fieldName(field).text();
  condition.letters = lettersOf(field);
  if (fieldKind(document().fieldType(field)).editor == FieldEditorKind::checkBox) {
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

void Arranger::calculate(std::uint32_t field) const {
  if (!document().isRecordsetOpen() || document().viewMode() != ViewMode::list ||
      field >= database().fieldCount())
    return;
  ColumnKind kind = ColumnKind::values;
  const FieldEditorKind editor = fieldKind(document().fieldType(field)).editor;
  if (editor == FieldEditorKind::date) kind = ColumnKind::dates;
  if (editor == FieldEditorKind::checkBox) kind = ColumnKind::truth;
  const std::wstring name = document().fieldName(field).text();
  const bool isServers = database().isServers();
  const std::wstring shown = wanted().sqlText().text();
  const ServerValues kept = serverValues(document().fieldType(field));
  const std::wstring sql =
      isServers ? serverFiguresSql(shown, name, kind, kept) : figuresSql(shown, name, kind);
  std::vector<std::wstring> values;
  const Outcome read = readFigures(String(sql.c_str()), values);
  if (read.cause() == Outcome::Cause::stopped) return;
  if (!read) {
    tellFailure(L"The column could not be calculated.", read.reason());
    return;
  }
  if (isServers) writeFiguresAsFilesDo(kind, kept, values);
  for (std::wstring& value : values) value = beginningOf(std::move(value));
  const std::wstring text = L"Column '" + name + L"'\n\n" + figuresText(kind, values);
  pages().prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

Outcome Arranger::readFigures(const String& sql, std::vector<std::wstring>& values) const {
  const WaitCursor wait;
  return database().readFirst(sql, values);
}
