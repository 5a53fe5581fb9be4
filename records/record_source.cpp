#include "records/record_source.h"

#include <cwchar>
#include <string>
#include <utility>

#include "data/database/sql_names.h"

void RecordSource::chooseTable(const String& name) {
  String sql = (L"Select * from " + selectedName(name)).c_str();
  tableName_ = name;
  queryName_.clear();
  setPlainSql(std::move(sql));
  kind_ = Kind::table;
  ++generation_;
}

void RecordSource::chooseQuery(const String& name, const String& sql, const String& table) {
  tableName_ = table;
  queryName_ = name;
  setPlainSql(sql);
  kind_ = Kind::query;
  ++generation_;
}

void RecordSource::chooseNone() {
  kind_ = Kind::none;
  tableName_.clear();
  queryName_.clear();
  setPlainSql({});
  ++generation_;
}

void RecordSource::setPlainSql(String sql) {
  sqlText_ = sql;
  plainSql_ = std::move(sql);
  arrangement_ = {};
  pending_ = {};
}

void RecordSource::arrange(Arrangement arrangement, const std::vector<std::wstring>& fields) {
  String sql = arrangement.toSql(plainSql_.text(), kind_ == Kind::table, fields).c_str();
  sqlText_ = std::move(sql);
  arrangement_ = std::move(arrangement);
  pending_ = {};
  ++generation_;
}

void RecordSource::chooseAgain() {
  ++generation_;
}

bool RecordSource::isTable(const String& name) const {
  return kind_ == Kind::table && std::wcscmp(tableName_.text(), name.text()) == 0;
}
