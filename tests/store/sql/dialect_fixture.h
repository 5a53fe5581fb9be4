#pragma once

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/store/sql/dialect.h"
#include "tests/store/memory_database.h"

namespace store {

// What the dialect makes of statements, for tests.

inline Statement read(std::string_view text) {
  Statement statement;
  const Status status = readStatement(text, &statement);
  EXPECT_TRUE(status) << text << ": " << status.message();
  return statement;
}

inline std::string sqlOf(std::string_view text) {
  return read(text).sql;
}

inline void expectUnchanged(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) EXPECT_EQ(sqlOf(text), text);
}

/// Runs what the dialect makes of `text`.
inline bool runDialect(MemoryDatabase* database, std::string_view text) {
  return database->run(sqlOf(text));
}

/// Name and declared type, in lower case, of each column: "Full name|varchar (255)".
inline MemoryDatabase::Texts columnsOf(MemoryDatabase* database, const std::string& table) {
  return database->query("SELECT name || '|' || lower(type) FROM pragma_table_info(" + quotedName(table) +
                         ")");
}

}  // namespace store
