#include <cwchar>
#include <utility>

#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"
#include "data/values/value_conversion.h"

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

Outcome readQuery(RecordsetHandle& queries, SavedQuery& query) {
  Outcome read = queries.field(kNameField).readText(query.name);
  return read ? queries.field(kSqlField).readText(query.sql) : read;
}

bool sameText(const String& one, const String& other) {
  return std::wcscmp(one.text(), other.text()) == 0;
}

/// The store lets the query then be changed only as long as it holds what was read here.
Outcome compareQuery(RecordsetHandle& queries, const String& name, const String* sql) {
  SavedQuery present;
  if (Outcome read = readQuery(queries, present); !read) return read;
  if (sameText(present.name, name) && (!sql || sameText(present.sql, *sql))) return {};
  return Outcome::failure(L"Another program has changed it meanwhile.", Outcome::Cause::changedElsewhere);
}

/// It would not open either if it were there.
bool saysNothingOfTable(const Outcome& opened) {
  using Cause = Outcome::Cause;
  return opened.cause() == Cause::notNow || opened.cause() == Cause::stopped ||
         opened.cause() == Cause::passwordWanted;
}

void tell(Outcome* change, Outcome outcome) {
  if (change) *change = std::move(outcome);
}

}  // namespace

bool Database::listQueries(NameList& names, Outcome* read) {
  NameList found;
  Outcome listed = readQueryNames(found);
  if (listed) names.swap(found);
  tell(read, std::move(listed));
  return true;
}

Outcome Database::readQueryNames(NameList& names) {
  RecordsetHandle queries;
  Outcome read = openQueries(queries);
  if (!read) return read;
  const LONG count = queries.recordCount();
  for (LONG query = 0; query < count; ++query) {
    String name;
    if (read = queries.field(kNameField).readText(name); !read) return read;
    names.append(name);
    if (read = queries.readOn(); !read) return read;
  }
  return {};
}

bool Database::getQuery(std::uint32_t index, SavedQuery& query, Outcome* read) {
  RecordsetHandle queries;
  SavedQuery stored;
  Outcome found = openQueryAt(index, queries);
  if (found) found = readQuery(queries, stored);
  const bool isFound = static_cast<bool>(found);
  if (isFound) query = std::move(stored);
  tell(read, std::move(found));
  return isFound;
}

bool Database::addQuery(const SavedQuery& query, Outcome* change) {
  RecordsetHandle queries;
  if (Outcome opened = openQueries(queries); !opened) {
    // Behind a lock the table may well be there.
    if (saysNothingOfTable(opened)) {
      tell(change, std::move(opened));
      return false;
    }
    if (Outcome created = connection_->execute(kCreateTable); !created) {
      tell(change, std::move(created));
      return false;
    }
    if (opened = openQueries(queries); !opened) {
      tell(change, std::move(opened));
      return true;
    }
  }
  queries.moveLast();
  Outcome added = queries.addNew();
  tell(change, added ? writeQuery(query, queries) : std::move(added));
  return true;
}

bool Database::updateQuery(std::uint32_t index, const SavedQuery& query, Outcome* change,
                           const SavedQuery* seen) {
  RecordsetHandle queries;
  Outcome opened = openQueryAt(index, queries);
  const bool isOpened = static_cast<bool>(opened);
  if (opened && seen) opened = compareQuery(queries, seen->name, &seen->sql);
  tell(change, opened ? writeQuery(query, queries) : std::move(opened));
  return isOpened;
}

bool Database::deleteQuery(std::uint32_t index, Outcome* change, const String* seenName) {
  RecordsetHandle queries;
  Outcome opened = openQueryAt(index, queries);
  const bool isOpened = static_cast<bool>(opened);
  if (opened && seenName) opened = compareQuery(queries, *seenName, nullptr);
  tell(change, opened ? queries.deleteCurrent() : std::move(opened));
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
