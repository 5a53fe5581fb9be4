#include "records/parts/arranger.h"

#include <algorithm>
#include <cwchar>
#include <map>
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

/// The letter case of A to Z makes no difference to a statement over a file.
std::wstring folded(std::wstring name) {
  for (wchar_t& unit : name) {
    if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit - L'A' + L'a');
  }
  return name;
}

/// How often each of the names is there.
class NameCounts {
 public:
  NameCounts(const std::vector<std::wstring>& names, bool isServers) : isServers_(isServers) {
    for (const std::wstring& name : names) ++counts_[told(name)];
  }
  bool isOnlyOne(const std::wstring& name) const {
    const auto found = counts_.find(told(name));
    return found != counts_.end() && found->second == 1;
  }

 private:
  std::wstring told(const std::wstring& name) const { return isServers_ ? name : folded(name); }

  bool isServers_;
  std::map<std::wstring, int> counts_;
};

/// The store numbers what has the same name: 'a', 'a:1' ... From the sixth one on the numbers are others each
/// time.
bool isLasting(const std::wstring& numbered, const std::wstring& name) {
  const std::wstring wanted = folded(numbered);
  const std::wstring beginning = folded(name);
  if (wanted == beginning) return true;
  return wanted.size() == beginning.size() + 2 && wanted.starts_with(beginning + L":") &&
         wanted.back() >= L'0' && wanted.back() <= L'9';
}

Outcome structureChanged() {
  return Outcome::failure(
      L"The structure of the database was changed meanwhile: the table must be opened again.",
      Outcome::Cause::structureChanged);
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

std::optional<std::wstring> Arranger::arrangedName(std::uint32_t field) const {
  std::wstring name;
  const Outcome read = readArrangedName(field, name);
  if (read) return name;
  tellNotArranged(read);
  return std::nullopt;
}

void Arranger::tellNotArranged(const Outcome& failure) const {
  if (failure.cause() == Outcome::Cause::stopped) return;
  tellFailure(L"The records could not be ordered or filtered.", failure.reason());
}

Outcome Arranger::readArrangedName(std::uint32_t field, std::wstring& name) const {
  if (field >= database().fieldCount()) return structureChanged();
  std::vector<std::wstring> names;
  if (Outcome read = readArrangedNames({field}, names); !read) return read;
  name = std::move(names.front());
  return {};
}

/// Of several fields that a query calls the same the store takes the first one, unless they have the names by
/// which it tells them apart itself.
Outcome Arranger::readArrangedNames(const std::vector<std::uint32_t>& fields,
                                    std::vector<std::wstring>& names) const {
  std::vector<std::wstring> shown;
  for (std::uint32_t field = 0; field < database().fieldCount(); ++field)
    shown.emplace_back(database().fieldName(field).text());
  const bool isServers = database().isServers();
  const NameCounts counts(shown, isServers);
  const auto isUnique = [&](std::uint32_t field) { return counts.isOnlyOne(shown[field]); };
  std::vector<std::wstring> arranged = shown;
  if (!std::all_of(fields.begin(), fields.end(), isUnique)) {
    std::vector<Database::FieldDescription> described;
    if (Outcome read = describe(described); !read) return read;
    if (described.size() != shown.size()) return structureChanged();
    for (std::size_t field = 0; field < arranged.size(); ++field)
      arranged[field] = described[field].name.text();
  }
  const NameCounts arrangedCounts(arranged, isServers);
  std::vector<std::wstring> all;
  for (const std::uint32_t field : fields) {
    if (!arrangedCounts.isOnlyOne(arranged[field]) || !isLasting(arranged[field], shown[field])) {
      const std::wstring reason = std::wstring(L"Two columns are called '") + shown[field] +
                                  L"'. Give one of them another name in the query.";
      return Outcome::failure(reason.c_str());
    }
    all.push_back(arranged[field]);
  }
  names = std::move(all);
  return {};
}

Outcome Arranger::readSearchedFields(std::vector<std::wstring>& names) const {
  std::vector<std::uint32_t> fields;
  for (std::uint32_t field = 0; field < database().fieldCount(); ++field) {
    if (canContainText(field)) fields.push_back(field);
  }
  return readArrangedNames(fields, names);
}

/// The fields as the statement has them which arranges the records.
Outcome Arranger::describe(std::vector<Database::FieldDescription>& fields) const {
  const std::wstring none = Arrangement::withoutRecords(wanted().plainSql().text());
  return database().describeFields(String(none.c_str()), fields);
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
  if (!looksAtAllFields(arrangement)) {
    wanted().arrange(std::move(arrangement), {});
    return;
  }
  wanted().arrangeLater(std::move(arrangement));
  // Where the fields can't be had now they are asked for once more before the records are opened.
  static_cast<void>(arrangePending());
}

/// Without the fields no record would seem to fit.
Outcome Arranger::arrangePending() const {
  if (wanted().pendingArrangement().isEmpty()) return {};
  std::vector<Database::FieldDescription> all;
  if (Outcome described = describe(all); !described) return described;
  std::vector<std::wstring> fields;
  for (const Database::FieldDescription& field : all) {
    if (fieldKind(field.type).isSearched) fields.emplace_back(field.name.text());
  }
  wanted().arrange(Arrangement(wanted().pendingArrangement()), fields);
  return {};
}

void Arranger::keep() const {
  const Arrangement& arrangement = wanted().arrangement();
  kepttexts::write(document().databasePath().text(), wanted().isQuery(), sourceName().text(),
                   arrangement.isEmpty() ? std::wstring() : arrangement.toText());
}

/// Another program may have renamed or deleted a field by which the records are ordered. What fails for
/// another reason, as by a connection that was lost, says nothing of the order and filter.
Outcome Arranger::openRecords() {
  Outcome opened = arrangePending();
  if (opened) {
    opened = database().openRecordset(wanted().sqlText());
  } else {
    database().closeRecordset();
  }
  const bool isArranged = !wanted().arrangement().isEmpty() || !wanted().pendingArrangement().isEmpty();
  if (opened.cause() != Outcome::Cause::notFitting || !isArranged) return opened;
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
  std::vector<std::wstring> fields;
  if (looksAtAllFields(arrangement)) {
    if (const Outcome read = readSearchedFields(fields); !read) {
      tellNotArranged(read);
      return false;
    }
  }
  source.arrange(std::move(arrangement), fields);
  std::uint32_t position = 0;
  bool hasOtherFields = false;
  if (const Outcome opened = openInPlace(source, former, position, hasOtherFields); !opened) {
    tellNotArranged(opened);
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
  std::wstring name;
  if (Outcome read = readArrangedName(field, name); !read) return read;
  condition = {};
  condition.field = std::move(name);
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
  std::wstring name;
  if (const Outcome named = readArrangedName(field, name); !named) {
    if (named.cause() != Outcome::Cause::stopped)
      tellFailure(L"The column could not be calculated.", named.reason());
    return;
  }
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
  const std::wstring text =
      std::wstring(L"Column '") + document().fieldName(field).text() + L"'\n\n" + figuresText(kind, values);
  pages().prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

Outcome Arranger::readFigures(const String& sql, std::vector<std::wstring>& values) const {
  const WaitCursor wait;
  return database().readFirst(sql, values);
}
