#include "platform/store/exchange/formats/sql_writer.h"

#include <algorithm>
#include <string_view>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/sql/dialect.h"

namespace store::exchange {

namespace {

/// `text` as a string of SQL.
void putString(std::string_view text, TextOutput& output) {
  output.put('\'');
  std::size_t quote = 0;
  while ((quote = text.find('\'')) != std::string_view::npos) {
    output.put(text.substr(0, quote + 1));
    output.put('\'');
    text.remove_prefix(quote + 1);
  }
  output.put(text);
  output.put('\'');
}

/// A type as a CREATE TABLE takes it: words, and sizes behind them. A server's may be anything else, as
/// "timestamp(3) without time zone".
std::string typeText(const std::string& type) {
  constexpr std::string_view kOfNames = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_ ";
  constexpr std::string_view kOfSizes = "0123456789, ";
  const std::size_t sizes = std::min(type.find('('), type.size());
  const std::string_view name = std::string_view(type).substr(0, sizes);
  const std::string_view behind = std::string_view(type).substr(sizes);
  const bool isPlain = name.find_first_not_of(kOfNames) == std::string_view::npos &&
                       name.find(" to ") == std::string_view::npos &&
                       (behind.empty() || behind.find_first_not_of(kOfSizes, 1) == behind.size() - 1);
  return isPlain && (behind.empty() || behind.ends_with(')')) ? type : quotedName(type);
}

Status readTexts(Backend& backend, const std::string& sql, std::vector<std::string>* texts) {
  std::unique_ptr<RowStream> rows;
  if (Status status = backend.openStream(sql, SourceKind::text, &rows); !status) return status;
  for (bool hasRow = true;;) {
    if (Status status = rows->next(&hasRow); !status) return status;
    if (!hasRow) return {};
    texts->emplace_back(rows->cell(0).bytes);
  }
}

}  // namespace

Status readTableStatements(Backend& backend, const std::string& name, TableStatements* statements) {
  TableStatements read;
  TableSchema schema;
  if (Status status = backend.describeTable(name, &schema); !status) return status;
  std::vector<std::string> create;
  read.isOfTable = schema.ordinary;
  if (schema.ordinary && !backend.isServers()) {
    const std::string ofTable =
        " FROM sqlite_schema WHERE sql IS NOT NULL AND tbl_name = " + quotedText(name) +
        " COLLATE NOCASE AND type ";
    if (Status status = readTexts(backend, "SELECT sql" + ofTable + "= 'table'", &create); !status)
      return status;
    Status status = readTexts(
        backend, "SELECT sql" + ofTable + "IN ('index', 'trigger') ORDER BY type, rowid", &read.behind);
    if (!status) return status;
    for (const TableSchema::Column& column : schema.columns) {
      if (!column.generated) read.columns.push_back(column.name);
    }
  }
  if (!create.empty()) read.create = create.front();
  *statements = std::move(read);
  return {};
}

void putLiteral(const Cell& cell, bool asBytes, TextOutput& output) {
  switch (cell.kind) {
    case CellKind::integer:
      putInteger(cell.integer, output);
      break;
    case CellKind::real:
      putReal(cell.real, true, output);
      break;
    case CellKind::text:
      // SQL ends at a zero, and a shell may not take what is no character.
      if (asBytes || cell.bytes.find('\0') != std::string_view::npos || !isWellFormed(cell.bytes)) {
        output.put("CAST(X'");
        putHex(cell.bytes, output);
        output.put("' AS TEXT)");
      } else {
        putString(cell.bytes, output);
      }
      break;
    case CellKind::blob:
      output.put("X'");
      putHex(cell.bytes, output);
      output.put('\'');
      break;
    default:
      output.put("NULL");
  }
}

void SqlWriter::begin(const std::vector<Column>& columns, TextOutput& output) {
  columns_ = writtenColumns(columns, true);
  std::string names;
  std::string definitions;
  for (const Column& column : columns) {
    if (!names.empty()) names += ", ";
    names += quotedName(column.name);
    if (!definitions.empty()) definitions += ", ";
    definitions += quotedName(column.name);
    if (!column.declaredType.empty()) definitions += " " + typeText(column.declaredType);
  }
  output.put("PRAGMA foreign_keys=OFF;\nBEGIN TRANSACTION;\n");
  output.put(statements_.create.empty() ? "CREATE TABLE " + quotedName(table_) + " (" + definitions + ")"
                                        : statements_.create);
  output.put(";\n");
  insert_ = "INSERT INTO " + quotedName(table_) + " (" + names + ") VALUES (";
}

void SqlWriter::writeRow(RowStream& rows, TextOutput& output) {
  output.put(insert_);
  for (std::size_t index = 0; index < columns_.size(); ++index) {
    if (index > 0) output.put(',');
    writeCell(rows.cell(index), columns_[index], output);
  }
  output.put(");\n");
}

void SqlWriter::writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output) {
  // A text that looks like a number, where another program has told SQLite not to look.
  if (!isOfKind(cell, column) && !isStoredAs(cell, column.affinity, cell)) countChanged();
  putLiteral(cell, false, output);
}

void SqlWriter::end(TextOutput& output) {
  for (const std::string& statement : statements_.behind) {
    output.put(statement);
    output.put(";\n");
  }
  output.put("COMMIT;\n");
}

}  // namespace store::exchange
