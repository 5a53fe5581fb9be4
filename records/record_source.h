#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/string.h"
#include "records/arrangement/arrangement.h"

/// Whose records are wanted: those of a table, of a saved query, or none. Each choice counts as one of its
/// own, so that what was opened or built for an earlier one is known to be stale.
class RecordSource {
 public:
  void chooseTable(const String& name);
  /// `table` is the table that a session names beside its query.
  void chooseQuery(const String& name, const String& sql, const String& table = String());
  void chooseNone();
  /// The records that are chosen, in this order and as far as they fit. Another choice has none at first.
  /// `fields` as Arrangement::toSql takes them.
  void arrange(Arrangement arrangement, const std::vector<std::wstring>& fields);
  /// The same once the fields are known; until then the records have no order and filter.
  void arrangeLater(Arrangement arrangement) { pending_ = std::move(arrangement); }
  /// The same records, opened anew.
  void chooseAgain();

  bool isNone() const { return kind_ == Kind::none; }
  bool isTable() const { return kind_ == Kind::table; }
  bool isQuery() const { return kind_ == Kind::query; }
  /// Whether it is the table of this name that is wanted.
  bool isTable(const String& name) const;

  const String& tableName() const { return tableName_; }  ///< empty while a query is in use
  const String& queryName() const { return queryName_; }  ///< empty while a table is in use
  const String& sqlText() const { return sqlText_; }      ///< the recordset is opened from it
  const String& plainSql() const { return plainSql_; }    ///< the same without the arrangement
  const Arrangement& arrangement() const { return arrangement_; }
  const Arrangement& pendingArrangement() const { return pending_; }  ///< empty when there is none
  /// Another one for each choice, never kNeverChosen.
  std::uint32_t generation() const { return generation_; }
  static constexpr std::uint32_t kNeverChosen = 0;

 private:
  void setPlainSql(String sql);

  enum class Kind { none, table, query };

  Kind kind_ = Kind::none;
  String tableName_;
  String queryName_;
  String sqlText_;
  String plainSql_;
  Arrangement arrangement_;
  Arrangement pending_;
  std::uint32_t generation_ = 1;
};
