#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/odbc/catalogue/server_catalogue.h"
#include "platform/store/odbc/dialect/column_list.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "platform/store/odbc/sources/key_reading.h"
#include "platform/store/odbc/sources/rows_ahead.h"
#include "platform/store/rows/backend.h"
#include "platform/store/sql/dialect.h"

namespace store {

/// The rows of a SELECT on one table of a server, told apart by the table's primary key. A change is made
/// only where the server still has what was read, by one statement that says so.
class ServerTableRows : public RowSource {
 public:
  /// A column of the SELECT, its form, and the table's column that it shows; null for an expression.
  struct ShownColumn {
    Column column;
    ValueForm form = ValueForm::text;
    std::string expression;
    const ServerColumn* source = nullptr;  // of `table`
  };

  /// `connection` outlives the rows. `select` is in the form that toReadableSql() gives, `table` has a key,
  /// and the sources of `columns` are in it.
  ServerTableRows(OdbcConnection& connection, const SingleTableSelect& select, const ServerTable& table,
                  const std::vector<ShownColumn>& columns);

  /// Whether the server takes the SELECT with the keys beside its columns, which it doesn't when it makes one
  /// row of all, and each row of the table is one of the SELECT at most. To be called once, before all else.
  bool isEachItsOwn();

  const std::vector<Column>& columns() const override { return columns_; }
  std::string_view table() const override { return tableName_; }
  bool isUpdatable() const override { return canInsert_ || canUpdate_ || canDelete_; }
  Status readKeys(KeySet* keys, std::size_t* count) override;
  Status readMoreKeys(KeySet* keys, std::size_t wanted) override;
  Status fetch(const KeySet& keys, std::size_t index, Row* row) override;
  void expect(std::size_t index, std::size_t count) override { ahead_.expect({index, count}); }
  std::unique_ptr<RowScan> makeScan(RowTest& test) override;
  Status insert(const std::vector<Change>& changes, KeySet* keys) override;
  Status update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                const Row& read) override;
  Status remove(KeySet* keys, std::size_t index, const Row* read) override;

 private:
  struct KeyColumn {
    std::string name;  // quoted
    std::string castType;
  };
  /// How a column of the SELECT is written and compared.
  struct Source {
    std::string name;  // of the table's column, quoted; empty for an expression
    std::string castType;
    bool holdsTexts = false;
  };
  struct Assignment {
    const Source* source;
    std::optional<std::string> text;
  };

  /// An empty text is no value of a type that holds no texts: it becomes nothing.
  std::vector<Assignment> assignmentsOf(const std::vector<Change>& changes) const;
  /// With the key's values in the condition itself.
  std::string keyCondition(const KeySet& keys, std::size_t index, const std::string& qualifier) const;
  /// With the key's values appended to `*parameters`, so that the statement is the same for each row.
  std::string keyCondition(const KeySet& keys, std::size_t index,
                           OdbcStatement::Parameters* parameters) const;
  std::vector<std::string> keyTexts(const KeySet& keys, std::size_t index) const;
  Key keyOf(const AnswerRow& row) const;
  std::string keyList(const std::string& qualifier) const;
  /// Appends " AND ..." for each column of the table that `read` holds.
  void addReadCondition(const Row& read, std::string* sql, OdbcStatement::Parameters* parameters) const;
  /// What reading fails with when the table is gone, has lost a column or has keys of another type.
  Status ofReading(const Status& status);
  bool haveKeysOtherTypes();
  Status askForBlock(const KeySet& keys, RowsAhead::Block block, Answer* answer);
  Status readBlock(const KeySet& keys, RowsAhead::Block block, std::vector<RowsAhead::FoundRow>* rows);
  /// Which rows may be wanted because of the column; empty when none.
  std::string candidateCondition(const RowTest& test, const SoughtText& sought, std::size_t number) const;
  /// Why a change met no row: gone, changed, or kept as it is by the server's rules.
  Status explainUnmet(const KeySet& keys, std::size_t index, const Row* read);
  bool isTupleKeyed() const { return isTupleKeyed_; }

  OdbcConnection& connection_;
  std::vector<Column> columns_;
  std::vector<ValueForm> forms_;
  std::vector<Source> sources_;
  std::string tableName_;
  std::string reference_;
  std::string ownRows_;  // a table that comes to inherit from it may have the same keys
  std::string qualifier_;
  bool isWholeTable_;
  std::vector<KeyColumn> keyColumns_;
  bool isTupleKeyed_;
  bool canInsert_;
  bool canUpdate_;
  bool canDelete_;
  std::vector<std::string> texts_;  // the SELECT's columns, as texts
  std::string rowList_;             // all of them
  std::string rowSize_;             // about how long they are together
  std::string keysSql_;
  std::unique_ptr<KeyReading> reading_;
  OdbcStatement blocks_;   // by which rows were read last
  OdbcStatement changes_;  // by which one was changed last
  RowsAhead ahead_;
};

}  // namespace store
