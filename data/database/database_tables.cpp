#include <algorithm>
#include <array>
#include <cwchar>

#include "data/database/database.h"
#include "data/database/sql_names.h"
#include "data/database/statement_text.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"

namespace {

constexpr wchar_t kCatalogue[] = L"MSysTables";
constexpr wchar_t kTableNameField[] = L"TableName";
constexpr std::array kSystemTables = {L"MSysFields", kCatalogue, L"MSysIndexes", L"MSysProcs"};

bool isSystemTable(const String& name) {
  return std::any_of(kSystemTables.begin(), kSystemTables.end(),
                     [&](const wchar_t* table) { return std::wcscmp(table, name.text()) == 0; });
}

/// The index of the catalogue's field of names, or -1.
LONG tableNameField(RecordsetHandle& catalogue) {
  const LONG count = catalogue.fieldCount();
  for (LONG field = 0; field < count; ++field) {
    if (std::wcscmp(catalogue.field(field).name().text(), kTableNameField) == 0) return field;
  }
  return -1;
}

}  // namespace

Outcome Database::createTable(const String& name, const String& columns) {
  StatementText statement;
  return runTableStatement(
      joinStatement({L"CREATE TABLE ", quotedName(name).c_str(), L" (", columns.text(), L")"}, statement),
      statement.data());
}

Outcome Database::dropTable(const String& name) {
  StatementText statement;
  return runTableStatement(joinStatement({L"DROP TABLE ", quotedName(name).c_str()}, statement),
                           statement.data());
}

Outcome Database::runTableStatement(bool fits, const wchar_t* statement) {
  if (!fits) return Outcome::failure(L"Its name and fields are too long for one statement.");
  return connection_->execute(statement);
}

bool Database::listTables(NameList& names, Outcome* read) {
  NameList found;
  Outcome listed = readTables(found);
  if (listed) names.swap(found);
  if (read) *read = std::move(listed);
  return true;
}

Outcome Database::readTables(NameList& names) const {
  RecordsetHandle catalogue;
  Outcome read = catalogue.open(kCatalogue, connection_.get(), CursorType::keyset, SourceKind::table);
  if (!read) return read;
  const LONG nameField = tableNameField(catalogue);
  const LONG count = nameField < 0 ? 0 : catalogue.recordCount();
  for (LONG record = 0; record < count; ++record) {
    String name;
    if (read = catalogue.field(nameField).readText(name); !read) return read;
    if (!isSystemTable(name)) names.append(name);
    if (read = catalogue.readOn(); !read) return read;
  }
  return {};
}

void Database::listFieldNames(const String& sql, NameList& names) {
  RecordsetHandle recordset;
  if (!recordset.open(sql.text(), connection_.get(), CursorType::dynamic, SourceKind::text)) return;
  NameList found;
  const LONG count = recordset.fieldCount();
  for (LONG field = 0; field < count; ++field) found.append(recordset.field(field).name());
  names.swap(found);
}
