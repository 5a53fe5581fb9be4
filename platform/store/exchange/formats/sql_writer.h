#pragma once

#include "platform/store/exchange/formats/coming_back.h"
#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

/// What makes a table again and what belongs to it.
struct TableStatements {
  bool isOfTable = false;
  std::string create;                ///< in front of the rows; empty where the columns alone make it
  std::vector<std::string> behind;   ///< indexes and triggers
  std::vector<std::string> columns;  ///< those that take values
};

/// Reads the statements of the table `name` from the database. Without any for what is no table, and for one
/// of a server, whose statements are its own SQL: the columns then make one.
Status readTableStatements(Backend& backend, const std::string& name, TableStatements* statements);

/// Writes a value as SQL says it, to the bit: a text that SQL would not read as it is, and with `asBytes` any
/// text, is cast from its bytes.
void putLiteral(const Cell& cell, bool asBytes, TextOutput& output);

/// Writes statements that make the table and its rows again in any SQLite database, every value to the bit.
class SqlWriter : public RowWriter {
 public:
  SqlWriter(std::string table, TableStatements statements)
      : table_(std::move(table)), statements_(std::move(statements)) {}

  void begin(const std::vector<Column>& columns, TextOutput& output) override;
  void writeRow(RowStream& rows, TextOutput& output) override;
  void end(TextOutput& output) override;

 private:
  void writeCell(const Cell& cell, const WrittenColumn& column, TextOutput& output);

  std::string table_;
  TableStatements statements_;
  std::string insert_;
  std::vector<WrittenColumn> columns_;
};

}  // namespace store::exchange
