#include "platform/store/odbc/catalogue/server_catalogue.h"

#include <algorithm>
#include <array>

#include "platform/store/odbc/catalogue/catalogue_tables.h"
#include "platform/store/odbc/driver/answer.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"

namespace store {

namespace {

// Also those that may not be read: a statement that names one is to be told that by the server.
const std::string kAllTables =
    "SELECT c.oid::text, c.relname::text, n.nspname::text, pg_catalog.pg_table_is_visible(c.oid)::text "
    "FROM pg_catalog.pg_class c JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace WHERE " +
    std::string(kIsUsers) + " AND (pg_catalog.pg_table_is_visible(c.oid) OR " + std::string(kIsReadable) +
    ")";

const std::string kTable =
    "SELECT (c.relkind IN ('r', 'p'))::text, pg_catalog.has_table_privilege(c.oid, 'INSERT')::text, "
    "pg_catalog.has_any_column_privilege(c.oid, 'UPDATE')::text, "
    "pg_catalog.has_table_privilege(c.oid, 'DELETE')::text, (c.relkind = 'r')::text, "
    "EXISTS (SELECT FROM pg_catalog.pg_inherits h WHERE h.inhparent = c.oid)::text "
    "FROM pg_catalog.pg_class c WHERE c.oid = ";

// The type of a domain is that which it stands on; the cast goes to the domain, whose rules the server then
// keeps.
const std::string kColumns =
    "SELECT a.attname::text, pg_catalog.format_type(a.atttypid, a.atttypmod), "
    "pg_catalog.quote_ident(tn.nspname) || '.' || pg_catalog.quote_ident(t.typname), "
    "coalesce(b.typname, t.typname)::text, a.attnotnull::text, "
    "(a.attgenerated = '' AND a.attidentity <> 'a' AND "
    "pg_catalog.has_column_privilege(a.attrelid, a.attnum, 'UPDATE'))::text, "
    "coalesce(pg_catalog.array_position(pg_catalog.string_to_array(i.indkey::text, ' ')::int[], "
    "a.attnum::int), "
    "0)::text, coalesce(pg_catalog.format_type(t.typbasetype, t.typtypmod), ''), (t.typcategory = "
    "'S')::text, "
    "pg_catalog.has_column_privilege(a.attrelid, a.attnum, 'SELECT')::text "
    "FROM pg_catalog.pg_attribute a JOIN pg_catalog.pg_type t ON t.oid = a.atttypid "
    "JOIN pg_catalog.pg_namespace tn ON tn.oid = t.typnamespace "
    "LEFT JOIN pg_catalog.pg_type b ON b.oid = t.typbasetype "
    "LEFT JOIN pg_catalog.pg_index i ON i.indrelid = a.attrelid AND i.indisprimary "
    "WHERE a.attnum > 0 AND NOT a.attisdropped AND a.attrelid = ";

const std::string kReferences =
    "SELECT a.attname::text, CASE WHEN pg_catalog.pg_table_is_visible(o.oid) THEN o.relname::text "
    "ELSE n.nspname || '.' || o.relname END, oa.attname::text "
    "FROM pg_catalog.pg_constraint k JOIN pg_catalog.pg_class o ON o.oid = k.confrelid "
    "JOIN pg_catalog.pg_namespace n ON n.oid = o.relnamespace "
    "JOIN pg_catalog.pg_attribute a ON a.attrelid = k.conrelid AND a.attnum = k.conkey[1] "
    "JOIN pg_catalog.pg_attribute oa ON oa.attrelid = k.confrelid AND oa.attnum = k.confkey[1] "
    "WHERE k.contype = 'f' AND pg_catalog.cardinality(k.conkey) = 1 AND k.conrelid = ";

NamedTable::Values valuesOf(std::string_view typeName) {
  if (typeName == "bool") return NamedTable::Values::truth;
  if (typeName == "bytea") return NamedTable::Values::bytes;
  if (typeName == "float4") return NamedTable::Values::single;
  return isMeasured(typeName) ? NamedTable::Values::measured : NamedTable::Values::others;
}

bool isTrue(const std::optional<std::string>& text) {
  return text && text->starts_with('t');
}

std::string textOf(const std::optional<std::string>& text) {
  return text ? *text : std::string();
}

}  // namespace

bool ServerTable::hasHiddenKey() const {
  const std::vector<const ServerColumn*> keys = keyColumns();
  return keys.size() == 1 && keys.front()->name == kHiddenKey;
}

std::vector<const ServerColumn*> ServerTable::keyColumns() const {
  std::vector<const ServerColumn*> keys;
  for (const ServerColumn& column : columns) {
    if (column.keyPosition == 0) continue;
    if (!column.isReadable) return {};
    keys.push_back(&column);
  }
  std::sort(keys.begin(), keys.end(), [](const ServerColumn* left, const ServerColumn* right) {
    return left->keyPosition < right->keyPosition;
  });
  return keys;
}

const ServerColumn* ServerTable::find(std::string_view column) const {
  for (const ServerColumn& own : columns) {
    if (own.name == column) return &own;
  }
  return nullptr;
}

std::vector<std::string> ServerTable::fieldNames() const {
  const bool hides = hasHiddenKey();
  std::vector<std::string> names;
  for (const ServerColumn& column : columns) {
    const bool isField = column.isReadable && (!hides || column.name != kHiddenKey);
    if (isField) names.push_back(column.name);
  }
  return names;
}

Status ServerCatalogue::learn() {
  Answer answer;
  if (Status status = ask(connection_, kAllTables, {}, &answer); !status) return status;
  std::map<std::string, KnownTable> tables;
  for (int pass = 0; pass < 2; ++pass) {
    // A table of another schema never hides one that has its name by itself.
    for (const AnswerRow& row : answer) {
      const bool isVisible = isTrue(row[3]);
      if (isVisible != (pass == 0)) continue;
      const std::string name = textOf(row[1]);
      const std::string schema = textOf(row[2]);
      const std::string reference =
          isVisible ? quotedName(name) : quotedName(schema) + "." + quotedName(name);
      const std::string id = textOf(row[0]);
      std::string itself =
          id + " AND c.relname = " + quotedText(name) +
          " AND c.relnamespace = (SELECT n.oid FROM pg_catalog.pg_namespace n WHERE n.nspname = " +
          quotedText(schema) + ") AND pg_catalog.pg_table_is_visible(c.oid) = " + textOf(row[3]);
      tables.emplace(isVisible ? name : schema + "." + name,
                     KnownTable{std::stoll(id), reference, std::move(itself)});
    }
  }
  tables_ = std::move(tables);
  isKnown_ = true;
  return {};
}

const std::pair<const std::string, ServerCatalogue::KnownTable>* ServerCatalogue::look(
    std::string_view name) const {
  if (const auto exact = tables_.find(std::string(name)); exact != tables_.end()) return &*exact;
  const auto found = std::find_if(tables_.begin(), tables_.end(),
                                  [&](const auto& table) { return equalsIgnoringCase(table.first, name); });
  return found != tables_.end() ? &*found : nullptr;
}

Status ServerCatalogue::find(std::string_view name, std::string* foundName, KnownTable* found,
                             bool* isFound) {
  const bool wasKnown = isKnown_;
  if (!isKnown_) {
    if (Status status = learn(); !status) return status;
  }
  const auto* table = look(name);
  if (wasKnown && (table == nullptr || table->first != name)) {
    // It may have been made since, beside one whose name has other letter cases.
    if (Status status = learn(); !status) return status;
    table = look(name);
  }
  *isFound = table != nullptr;
  if (table == nullptr) return {};
  *foundName = table->first;
  *found = table->second;
  return {};
}

Status ServerCatalogue::readTable(std::string_view name, std::optional<ServerTable>* table) {
  KnownTable known;
  ServerTable read;
  bool isFound = false;
  if (Status status = find(name, &read.name, &known, &isFound); !status) return status;
  table->reset();
  if (!isFound) return {};
  Answer answer;
  if (Status status = ask(connection_, kTable + known.itself, {}, &answer); !status) return status;
  if (answer.empty()) {
    // It was dropped or renamed, and another one may have been made under its name.
    if (Status status = learn(); !status) return status;
    const auto* other = look(name);
    if (other == nullptr) return {};
    read.name = other->first;
    known = other->second;
    if (Status status = ask(connection_, kTable + known.itself, {}, &answer); !status) return status;
    if (answer.empty()) return {};
  }
  read.id = known.id;
  read.reference = known.reference;
  read.isTable = isTrue(answer[0][0]);
  read.canInsert = isTrue(answer[0][1]);
  read.canUpdate = isTrue(answer[0][2]);
  read.canDelete = isTrue(answer[0][3]);
  const bool isOrdinary = isTrue(answer[0][4]);
  read.ownRows = (isOrdinary ? "ONLY " : "") + known.reference;
  read.hasHeirs = isOrdinary && isTrue(answer[0][5]);
  if (Status status = readColumns(&read); !status) return status;
  if (Status status = readReferences(&read); !status) return status;
  *table = std::move(read);
  return {};
}

Status ServerCatalogue::readColumns(ServerTable* table) {
  Answer answer;
  const std::string sql = kColumns + std::to_string(table->id) + " ORDER BY a.attnum";
  if (Status status = ask(connection_, sql, {}, &answer); !status) return status;
  for (const AnswerRow& row : answer) {
    ServerColumn column;
    column.name = textOf(row[0]);
    column.spelledType = textOf(row[1]);
    column.castType = textOf(row[2]);
    const std::string base = textOf(row[7]);
    column.type = serverTypeOf(textOf(row[3]), base.empty() || base == "-" ? column.spelledType : base);
    column.values = valuesOf(textOf(row[3]));
    column.holdsTexts = isTrue(row[8]);
    column.notNull = isTrue(row[4]);
    column.isWritable = isTrue(row[5]);
    column.isReadable = isTrue(row[9]);
    column.keyPosition = std::stoi(textOf(row[6]));
    table->columns.push_back(std::move(column));
  }
  return {};
}

Status ServerCatalogue::readReferences(ServerTable* table) {
  Answer answer;
  const std::string sql = kReferences + std::to_string(table->id) + " ORDER BY k.oid";
  if (Status status = ask(connection_, sql, {}, &answer); !status) return status;
  for (const AnswerRow& row : answer) {
    for (ServerColumn& column : table->columns) {
      if (column.name != textOf(row[0]) || !column.reference.table.empty()) continue;
      column.reference = {textOf(row[1]), textOf(row[2])};
    }
  }
  return {};
}

std::string_view ServerCatalogue::catalogueTable(std::string_view name) {
  for (const std::string_view own : kCatalogueTables) {
    if (equalsIgnoringCase(own, name)) return own;
  }
  return {};
}

}  // namespace store
