#include "platform/store/exchange/import_plan.h"

#include <algorithm>
#include <set>

#include "platform/store/exchange/column_guess.h"
#include "platform/store/exchange/formats/csv_detection.h"
#include "platform/store/exchange/formats/csv_reader.h"
#include "platform/store/exchange/formats/json_reader.h"
#include "platform/store/exchange/names.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/type_names.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

std::string_view typeOfValues(const TableSchema::Column& column) {
  return column.valueType.empty() ? std::string_view(column.declaredType) : column.valueType;
}

constexpr int kRecordsBetweenLooks = 1024;

using Texts = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

const std::string* chosenFor(const Pairs& pairs, const std::string& name) {
  for (const auto& [column, choice] : pairs) {
    if (equalsIgnoringCase(column, name)) return &choice;
  }
  return nullptr;
}

bool contains(const Texts& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [name](const std::string& other) { return equalsIgnoringCase(other, name); });
}

bool isTypeName(std::string_view type) {
  const auto fits = [](char character) {
    return isNamePart(character) || character == ' ' || character == '(' || character == ')' ||
           character == ',';
  };
  return !type.empty() && std::all_of(type.begin(), type.end(), fits) &&
         std::count(type.begin(), type.end(), '(') == std::count(type.begin(), type.end(), ')');
}

/// Of a column of a new table.
void giveType(PlannedColumn& column, const std::string& type, bool isExact) {
  column.declaredType = type;
  // The type of this name becomes another one in the statement that makes the table.
  column.kind = isExact ? ValueKind::any : kindOf(equalsIgnoringCase(type, "memo") ? "text" : type);
}

/// What is in a file.
struct FileContents {
  Texts first;                       // the texts of the first record
  std::vector<bool> isFirstTyped;    // whether they look like more than texts
  std::vector<ColumnGuess> guesses;  // of the records behind it
  Texts names;
};

Status lookThrough(RecordReader& reader, ByteSource& source, bool needsFirst, ImportObserver& observer,
                   FileContents* contents) {
  FileContents found;
  bool isFirst = needsFirst;
  for (int count = 1;; ++count) {
    bool hasRecord = false;
    if (Status status = reader.next(&hasRecord); !status) return status;
    if (!hasRecord) break;
    if (count % kRecordsBetweenLooks == 0 && !observer.goesOn(false, reader.bytesRead(), source.length())) {
      return cancelled();
    }
    const Record& record = reader.record();
    if (reader.names().size() > found.guesses.size()) found.guesses.resize(reader.names().size());
    const bool isUsable =
        record.problem.empty() && (!reader.hasFixedFields() || record.fields.size() == found.guesses.size());
    if (isFirst) {
      isFirst = false;
      for (const Field& field : record.fields) {
        ColumnGuess guess;
        guess.look(field);
        found.first.emplace_back(field.text);
        found.isFirstTyped.push_back(guess.isTyped());
      }
      continue;
    }
    if (!isUsable) continue;
    for (std::size_t index = 0; index < record.fields.size(); ++index) {
      found.guesses[index].look(record.fields[index]);
    }
  }
  found.names = reader.names();
  found.guesses.resize(found.names.size());
  *contents = std::move(found);
  return {};
}

/// As values often do, and names of columns seldom: "007", "1,5", "-3", "01/02/2003".
bool beginsLikeANumber(std::string_view text) {
  const std::size_t first = text.find_first_not_of("+-.,");
  return first != std::string_view::npos && first <= 1 && text[first] >= '0' && text[first] <= '9';
}

/// The columns of the file that the user has named.
Texts chosenColumns(const ImportOptions& options) {
  Texts chosen = options.skipped;
  for (const auto& [column, type] : options.types) chosen.push_back(column);
  for (const auto& [column, target] : options.map) chosen.push_back(column);
  return chosen;
}

struct HeaderGuess {
  bool isHeader = false;
  bool isInDoubt = false;
};

/// Whether any of the texts is the name of a column that is known: the table's own, or one that the user
/// named.
bool nameColumn(const Texts& texts, const TableSchema* schema, const Texts& chosen) {
  return std::any_of(texts.begin(), texts.end(), [&](const std::string& text) {
    return contains(chosen, text) || (schema != nullptr && schema->find(text) != nullptr);
  });
}

/// Whether the first record has the names of the columns: it is made of words alone, and of different ones. A
/// table that is there has to give a reason besides, because a record taken for names would be lost in it:
/// one of its own names, one that the user has named, or values of another kind below a word. Without a
/// reason it is in doubt.
HeaderGuess guessHeader(const FileContents& contents, const TableSchema* schema, const Texts& chosen) {
  if (nameColumn(contents.first, schema, chosen)) return {true};
  std::set<std::string> names;
  bool hasReason = false;
  for (std::size_t index = 0; index < contents.first.size(); ++index) {
    if (index < contents.guesses.size() && contents.guesses[index].isTyped()) hasReason = true;
  }
  for (std::size_t index = 0; index < contents.first.size(); ++index) {
    const std::string& text = contents.first[index];
    if (contents.isFirstTyped[index] || beginsLikeANumber(text)) return {};
    if (!text.empty() && !names.insert(lowerCase(text)).second) return {};
  }
  if (names.empty()) return {};
  return {hasReason || schema == nullptr, !hasReason};
}

class Planner {
 public:
  Planner(Backend& backend, ByteSource& source, const ImportOptions& options, ImportObserver& observer)
      : backend_(backend), source_(source), options_(options), observer_(observer) {}

  Status make(ImportPlan* plan);

 private:
  Status findTable();
  Status findFormat();
  Status readFile();
  Status readHeaderOfTable();
  Status checkChoices() const;
  Status planNewTable();
  Status planExistingTable();
  Status matchColumns();
  const TableSchema::Column* placeOf(const PlannedColumn& column) const;
  Status findKey();

  bool isSkipped(const std::string& name) const { return contains(options_.skipped, name); }

  Backend& backend_;
  ByteSource& source_;
  const ImportOptions& options_;
  ImportObserver& observer_;
  TableSchema schema_;
  FileContents contents_;
  ImportPlan plan_;
};

Status Planner::make(ImportPlan* plan) {
  if (Status status = findTable(); !status) return status;
  if (Status status = findFormat(); !status) return status;
  if (Status status = readFile(); !status) return status;
  if (contents_.names.empty()) return {ErrorCode::conversion, "There are no columns in the file."};
  if (Status status = checkChoices(); !status) return status;
  Status status = plan_.isNewTable ? planNewTable() : planExistingTable();
  if (!status) return status;
  if (status = findKey(); !status) return status;
  if (status = checkColumns(plan_); !status) return status;
  plan_.fileColumns = std::move(contents_.names);
  *plan = std::move(plan_);
  return {};
}

Status Planner::findTable() {
  plan_.table = options_.table;
  plan_.isExact = options_.isExact;
  if (Status status = backend_.describeTable(options_.table, &schema_); !status) return status;
  plan_.isNewTable = schema_.columns.empty();
  if (plan_.isNewTable && options_.target == ImportOptions::Target::existingTable) {
    return {ErrorCode::noTable, "There is no table called " + options_.table + "."};
  }
  if (!plan_.isNewTable && options_.target == ImportOptions::Target::newTable) {
    return {ErrorCode::tableExists, "There is a table called " + options_.table + " already."};
  }
  if (plan_.isNewTable && validTableName(options_.table) != options_.table) {
    return {ErrorCode::invalidArgument, "A table can't be called \"" + options_.table + "\"."};
  }
  if (!plan_.isNewTable && !schema_.ordinary) {
    return {ErrorCode::readOnly, options_.table + " is not a table that takes records."};
  }
  return {};
}

Status Planner::findFormat() {
  if (options_.encoding) {
    plan_.encoding = *options_.encoding;
  } else {
    if (Status status = detectEncoding(source_, &plan_.encoding, &plan_.notUtf8); !status) return status;
    // Nothing in the file speaks for it, only against the others.
    plan_.isEncodingInDoubt = plan_.encoding == Encoding::windows1252;
  }
  if (options_.isJson) {
    plan_.isJson = *options_.isJson;
  } else if (Status status = detectJson(source_, plan_.encoding, &plan_.isJson); !status) {
    return status;
  }
  if (plan_.isJson) return {};
  plan_.csv.nullText = options_.nullText;
  if (options_.separator) {
    plan_.csv.separator = *options_.separator;
    return {};
  }
  return detectSeparator(source_, plan_.encoding, &plan_.csv.separator);
}

Status Planner::readFile() {
  const bool looksForHeader = !plan_.isJson && !options_.hasHeader;
  plan_.csv.hasHeader = !plan_.isJson && options_.hasHeader.value_or(false);
  if (looksForHeader && !plan_.isNewTable) {
    if (Status status = readHeaderOfTable(); !status || plan_.csv.hasHeader) return status;
  }
  std::unique_ptr<RecordReader> reader;
  if (Status status = openReader(source_, plan_, &reader); !status) return status;
  const bool needsNamesAlone = !plan_.isNewTable && !plan_.isJson && !looksForHeader;
  if (needsNamesAlone) {
    contents_.names = reader->names();
    return {};
  }
  Status status = lookThrough(*reader, source_, looksForHeader, observer_, &contents_);
  if (!status || !looksForHeader) return status;
  const HeaderGuess header =
      guessHeader(contents_, plan_.isNewTable ? nullptr : &schema_, chosenColumns(options_));
  plan_.csv.hasHeader = header.isHeader;
  plan_.isHeaderInDoubt = header.isInDoubt;
  if (plan_.csv.hasHeader) {
    contents_.names = contents_.first;
    return {};
  }
  // The first record is one like the others.
  if (status = openReader(source_, plan_, &reader); !status) return status;
  bool hasRecord = false;
  if (status = reader->next(&hasRecord); !status || !hasRecord) return status;
  for (std::size_t index = 0; index < reader->record().fields.size(); ++index) {
    contents_.guesses[index].look(reader->record().fields[index]);
  }
  return {};
}

/// A first record that names columns of the table has the names, whatever follows.
Status Planner::readHeaderOfTable() {
  std::unique_ptr<RecordReader> reader;
  if (Status status = openReader(source_, plan_, &reader); !status) return status;
  bool hasRecord = false;
  if (Status status = reader->next(&hasRecord); !status || !hasRecord) return status;
  Texts first;
  for (const Field& field : reader->record().fields) first.emplace_back(field.text);
  if (!nameColumn(first, &schema_, chosenColumns(options_))) return {};
  plan_.csv.hasHeader = true;
  contents_.names = std::move(first);
  return {};
}

Status Planner::checkChoices() const {
  for (const auto& [column, type] : options_.types) {
    if (Status status = checkType(type); !status) return status;
  }
  for (const std::string& column : chosenColumns(options_)) {
    if (!contains(contents_.names, column)) {
      return {ErrorCode::invalidArgument, "The file has no column called \"" + column + "\"."};
    }
  }
  if (!plan_.isNewTable && !options_.types.empty()) {
    return {ErrorCode::invalidArgument, "The table is there already, and its types rule."};
  }
  return {};
}

Status Planner::planNewTable() {
  Texts wanted;
  for (std::size_t index = 0; index < contents_.names.size(); ++index) {
    const std::string& name = contents_.names[index];
    if (isSkipped(name)) continue;
    const std::string* mapped = chosenFor(options_.map, name);
    const std::string* type = chosenFor(options_.types, name);
    wanted.push_back(mapped != nullptr ? *mapped : name);
    PlannedColumn column;
    column.source = name;
    column.sourceIndex = index;
    giveType(column, type != nullptr ? *type : std::string(contents_.guesses[index].declaredType()),
             options_.isExact);
    plan_.columns.push_back(std::move(column));
  }
  const Texts valid = validFieldNames(wanted);
  for (std::size_t index = 0; index < valid.size(); ++index) plan_.columns[index].target = valid[index];
  return {};
}

Status Planner::planExistingTable() {
  for (std::size_t index = 0; index < contents_.names.size(); ++index) {
    if (isSkipped(contents_.names[index])) continue;
    PlannedColumn column;
    column.source = contents_.names[index];
    column.sourceIndex = index;
    plan_.columns.push_back(std::move(column));
  }
  if (Status status = matchColumns(); !status) return status;
  if (options_.skipsUnknown) {
    std::erase_if(plan_.columns, [this](const PlannedColumn& column) { return placeOf(column) == nullptr; });
  }
  Texts taken;
  for (PlannedColumn& column : plan_.columns) {
    if (contains(taken, column.target)) {
      return {ErrorCode::badColumn, "Two columns of the file are for " + column.target + "."};
    }
    taken.push_back(column.target);
    const TableSchema::Column* target = placeOf(column);
    if (target == nullptr) {
      return {ErrorCode::badColumn, "The table has no column called \"" + column.target +
                                        "\" that takes values; the file has one."};
    }
    column.target = target->name;
    column.declaredType = target->declaredType;
    column.kind = options_.isExact ? ValueKind::any : kindOf(typeOfValues(*target));
  }
  return {};
}

/// Null where the table has no column that takes its values.
const TableSchema::Column* Planner::placeOf(const PlannedColumn& column) const {
  const TableSchema::Column* place = schema_.find(column.target);
  return place != nullptr && !place->generated ? place : nullptr;
}

/// By name; by order where the file has no names or none that the table has.
Status Planner::matchColumns() {
  const bool hasNames = plan_.isJson || plan_.csv.hasHeader;
  bool isByName = plan_.isJson || !options_.map.empty();
  for (const PlannedColumn& column : plan_.columns) {
    isByName |= hasNames && schema_.find(column.source) != nullptr;
  }
  Texts inOrder;
  for (const TableSchema::Column& column : schema_.columns) {
    if (!column.generated) inOrder.push_back(column.name);
  }
  std::size_t next = 0;
  for (PlannedColumn& column : plan_.columns) {
    const std::string* mapped = chosenFor(options_.map, column.source);
    if (mapped != nullptr) {
      column.target = *mapped;
    } else if (isByName) {
      column.target = column.source;
    } else if (next < inOrder.size()) {
      column.target = inOrder[next++];
    } else if (!options_.skipsUnknown) {
      return {ErrorCode::badColumn, "The file has more columns than the table."};
    }
  }
  return {};
}

Status Planner::findKey() {
  plan_.primaryKey = schema_.keyColumns();
  if (!options_.replaces) return {};
  if (plan_.isNewTable) return {ErrorCode::noTable, "There is no table whose records could be replaced."};
  plan_.keyColumns = options_.keyColumns.empty() ? plan_.primaryKey : options_.keyColumns;
  if (plan_.keyColumns.empty()) {
    return {ErrorCode::invalidArgument, "The table has no primary key: say which columns are the key."};
  }
  return {};
}

}  // namespace

Status checkType(const std::string& type) {
  if (!isTypeName(type)) return {ErrorCode::invalidArgument, "\"" + type + "\" is no type."};
  if (isKnownType(type)) return {};
  return {ErrorCode::invalidArgument,
          "The type \"" + type +
              "\" is not known. Known are Integer, Bigint, Float, Decimal, Bit, Date, Datetime, Time, Text, "
              "Varchar (n), Long Varbinary and what other programs call them."};
}

Status setColumnType(ImportPlan& plan, std::size_t column, const std::string& type) {
  if (!plan.isNewTable) {
    return {ErrorCode::invalidArgument, "The table is there already, and its types rule."};
  }
  if (Status status = checkType(type); !status) return status;
  giveType(plan.columns[column], type, plan.isExact);
  return {};
}

Status checkColumns(const ImportPlan& plan) {
  if (plan.columns.empty()) return {ErrorCode::badColumn, "No column of the file is left."};
  for (const std::string& key : plan.keyColumns) {
    const bool isGiven =
        std::any_of(plan.columns.begin(), plan.columns.end(),
                    [&](const PlannedColumn& column) { return equalsIgnoringCase(column.target, key); });
    if (!isGiven) return {ErrorCode::badColumn, "The file has no values for the key " + key + "."};
  }
  return {};
}

Status cancelled() {
  return {ErrorCode::illegalOperation, "The import was cancelled. Nothing was changed."};
}

std::string ImportPlan::createStatement() const {
  std::string list;
  for (const PlannedColumn& column : columns) {
    if (!list.empty()) list += ", ";
    list += quotedName(column.target) + " " + column.declaredType;
  }
  return "CREATE TABLE " + quotedName(table) + " (" + list + ")";
}

Status openReader(ByteSource& source, const ImportPlan& plan, std::unique_ptr<RecordReader>* reader) {
  if (plan.isJson) {
    std::unique_ptr<JsonReader> json;
    Status status = JsonReader::open(source, plan.encoding, &json);
    if (status) *reader = std::move(json);
    return status;
  }
  std::unique_ptr<CsvReader> csv;
  Status status = CsvReader::open(source, plan.encoding, plan.csv, &csv);
  if (status) *reader = std::move(csv);
  return status;
}

Status planImport(Backend& backend, ByteSource& source, const ImportOptions& options,
                  ImportObserver& observer, ImportPlan* plan) {
  return Planner(backend, source, options, observer).make(plan);
}

}  // namespace store::exchange
