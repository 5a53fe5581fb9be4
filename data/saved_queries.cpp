#include "data/connection_handle.h"
#include "data/database.h"
#include "data/last_error.h"
#include "data/recordset_handle.h"

namespace {

constexpr wchar_t kCreateTable[] = L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)";
constexpr wchar_t kSelectAll[] = L"Select * from QuivaneQueries ORDER BY QueryName";
constexpr LONG kNameField = 0;
constexpr LONG kSqlField = 1;

bool writeQuery(const SavedQuery& query, RecordsetHandle& queries) {
  queries.field(kNameField).setValue(Variant::fromText(query.name.text()));
  queries.field(kSqlField).setValue(Variant::fromText(query.sql.text()));
  return queries.update();
}

}  // namespace

bool Database::listQueries(NameList& names) {
  RecordsetHandle queries;
  if (!openQueries(queries)) return true;
  NameList found;
  const LONG count = queries.recordCount();
  for (LONG query = 0; query < count; ++query) {
    found.append(queries.field(kNameField).valueAsText());
    if (!queries.moveNext()) break;
  }
  names.swap(found);
  return true;
}

bool Database::getQuery(std::uint32_t index, SavedQuery& query) {
  RecordsetHandle queries;
  if (!openQueryAt(index, queries)) return false;
  query.name = queries.field(kNameField).valueAsText();
  query.sql = queries.field(kSqlField).valueAsText();
  return true;
}

bool Database::addQuery(const SavedQuery& query) {
  RecordsetHandle queries;
  if (!openQueries(queries)) {
    const bool made = connection_->execute(kCreateTable);
    if (!made || !openQueries(queries)) {
      noteQueryChange(false);
      return made;
    }
  }
  queries.moveLast();
  noteQueryChange(queries.addNew() && writeQuery(query, queries));
  return true;
}

bool Database::updateQuery(std::uint32_t index, const SavedQuery& query) {
  RecordsetHandle queries;
  if (!openQueryAt(index, queries)) {
    noteQueryChange(false);
    return false;
  }
  noteQueryChange(writeQuery(query, queries));
  return true;
}

bool Database::deleteQuery(std::uint32_t index) {
  RecordsetHandle queries;
  if (!openQueryAt(index, queries)) {
    noteQueryChange(false);
    return false;
  }
  noteQueryChange(queries.deleteCurrent());
  return true;
}

void Database::noteQueryChange(bool done) {
  queryRefused_ = !done;
  if (queryRefused_) refusalText_ = takeLastErrorText();
}

/// Clears the connection string, which the open connection does not heed, before every use of the table.
bool Database::openQueries(RecordsetHandle& queries) {
  connection_->setConnectionString(L"");
  return queries.open(kSelectAll, connection_.get(), CursorType::keyset, SourceKind::text);
}

/// Opens the table and moves to the query at `index`. False when there is none.
bool Database::openQueryAt(std::uint32_t index, RecordsetHandle& queries) {
  if (!openQueries(queries)) return false;
  const LONG count = queries.recordCount();
  if (count < 0 || index >= static_cast<std::uint32_t>(count)) return false;
  queries.move(static_cast<LONG>(index), MoveOrigin::first);
  return true;
}
