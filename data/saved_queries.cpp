#include <utility>

#include "data/connection_handle.h"
#include "data/database.h"
#include "data/recordset_handle.h"

namespace {

constexpr wchar_t kCreateTable[] = L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)";
constexpr wchar_t kSelectAll[] = L"Select * from QuivaneQueries ORDER BY QueryName";
constexpr LONG kNameField = 0;
constexpr LONG kSqlField = 1;

Outcome writeQuery(const SavedQuery& query, RecordsetHandle& queries) {
  const Outcome named = queries.field(kNameField).setValue(Variant::fromText(query.name.text()));
  if (!named) return named;
  const Outcome written = queries.field(kSqlField).setValue(Variant::fromText(query.sql.text()));
  return written ? queries.update() : written;
}

void tell(Outcome* change, Outcome outcome) {
  if (change) *change = std::move(outcome);
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

bool Database::addQuery(const SavedQuery& query, Outcome* change) {
  RecordsetHandle queries;
  if (!openQueries(queries)) {
    if (Outcome created = connection_->execute(kCreateTable); !created) {
      tell(change, std::move(created));
      return false;
    }
    if (Outcome opened = openQueries(queries); !opened) {
      tell(change, std::move(opened));
      return true;
    }
  }
  queries.moveLast();
  Outcome added = queries.addNew();
  tell(change, added ? writeQuery(query, queries) : std::move(added));
  return true;
}

bool Database::updateQuery(std::uint32_t index, const SavedQuery& query, Outcome* change) {
  RecordsetHandle queries;
  Outcome opened = openQueryAt(index, queries);
  const bool isOpened = static_cast<bool>(opened);
  tell(change, isOpened ? writeQuery(query, queries) : std::move(opened));
  return isOpened;
}

bool Database::deleteQuery(std::uint32_t index, Outcome* change) {
  RecordsetHandle queries;
  Outcome opened = openQueryAt(index, queries);
  const bool isOpened = static_cast<bool>(opened);
  tell(change, isOpened ? queries.deleteCurrent() : std::move(opened));
  return isOpened;
}

/// Clears the connection string, which the open connection does not heed, before every use of the table.
Outcome Database::openQueries(RecordsetHandle& queries) {
  connection_->setConnectionString(L"");
  return queries.open(kSelectAll, connection_.get(), CursorType::keyset, SourceKind::text);
}

/// Opens the table and moves to the query at `index`. Fails when there is none.
Outcome Database::openQueryAt(std::uint32_t index, RecordsetHandle& queries) {
  if (Outcome opened = openQueries(queries); !opened) return opened;
  const LONG count = queries.recordCount();
  if (count < 0 || index >= static_cast<std::uint32_t>(count)) {
    return Outcome::failure(L"There is no such query.");
  }
  queries.move(static_cast<LONG>(index), MoveOrigin::first);
  return {};
}
