#include "tests/ui/program/states/walk_model.h"

#include <windows.h>

#include <array>
#include <cstdio>

#include "gtest/gtest.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/support/test_database.h"
#include "views/form/form_ids.h"

using automationtest::SqliteFile;

namespace {

std::string utf8(const std::wstring& text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

std::string quotedText(const std::wstring& text) {
  std::string quoted = "'";
  for (const char character : utf8(text)) {
    quoted += character;
    if (character == '\'') quoted += '\'';
  }
  return quoted + "'";
}

template <typename... Values>
std::string formatted(const char* format, Values... values) {
  char text[64] = "";
  std::snprintf(text, sizeof(text), format, values...);
  return text;
}

std::wstring wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

WalkValue randomNumber(Random& random, int most) {
  if (below(random, 8) == 0) return {L"", "NULL"};
  const std::string digits = std::to_string(below(random, 2 * most + 1) - most);
  return {wide(digits), digits};
}

/// Quarters, which are exact in both worlds.
WalkValue randomReal(Random& random) {
  const double value = (below(random, 80'001) - 40'000) / 4.0;
  std::string quoted = formatted("%.15g", value);
  if (quoted.find('.') == std::string::npos) quoted += ".0";
  return {wide(formatted("%f", value)), quoted};
}

WalkValue randomText(Random& random, int wordCount) {
  static constexpr std::array kWords = {L"ash", L"O'Hara", L"Ωδή", L"книга", L"東京", L"x", L"%_", L"“q”"};
  std::wstring text;
  for (int i = 0; i <= below(random, wordCount); ++i) {
    if (i > 0) text += L' ';
    text += kWords[static_cast<std::size_t>(below(random, static_cast<int>(kWords.size())))];
  }
  return {text, quotedText(text)};
}

WalkValue randomDate(Random& random) {
  const int year = 1900 + below(random, 200);
  const int month = 1 + below(random, 12);
  const int day = 1 + below(random, 28);
  return {wide(formatted("%d/%d/%d", month, day, year)),
          formatted("'%04d-%02d-%02d 00:00:00'", year, month, day)};
}

const wchar_t* declaration(FieldKind kind) {
  switch (kind) {
    case FieldKind::small:
      return L"SmallInt";
    case FieldKind::real:
      return L"Double";
    case FieldKind::text:
      return L"VarChar(40)";
    case FieldKind::longText:
      return L"Text";
    case FieldKind::flag:
      return L"Boolean";
    case FieldKind::date:
      return L"DateTime";
    case FieldKind::id:
    case FieldKind::whole:
      break;
  }
  return L"Integer";
}

void fillRandomly(WalkTable& table, int recordCount, Random& random) {
  for (int id = 1; id <= recordCount; ++id) {
    std::vector<WalkValue>& record = table.records[id];
    for (const FieldKind kind : table.kinds) record.push_back(randomValue(random, kind));
    record[0] = {std::to_wstring(id), std::to_string(id)};
  }
}

void write(SqliteFile& file, const WalkTable& table) {
  std::string create = "CREATE TABLE [" + utf8(table.name) + "] (";
  for (std::size_t field = 0; field < table.kinds.size(); ++field) {
    if (field != 0) create += ", ";
    create += utf8(table.fieldName(field)) + " " + utf8(declaration(table.kinds[field]));
  }
  file.run(create + ")");
  file.run("BEGIN");
  for (const auto& [id, record] : table.records) {
    std::string values;
    for (const WalkValue& value : record) values += (values.empty() ? "" : ", ") + value.quoted;
    file.run("INSERT INTO [" + utf8(table.name) + "] VALUES (" + values + ")");
  }
  file.run("COMMIT");
}

void write(const WalkDatabase& database) {
  makeDatabase(database.path, {});
  SqliteFile file(database.path.wstring());
  for (const WalkTable& table : database.tables) write(file, table);
  if (database.queries.empty()) return;
  file.run("CREATE TABLE QuivaneQueries (QueryName Text, SQL Text)");
  for (const auto& [name, sql] : database.queries)
    file.run("INSERT INTO QuivaneQueries VALUES (" + quotedText(name) + ", " + quotedText(sql) + ")");
}

}  // namespace

int below(Random& random, int count) {
  return static_cast<int>(random() % static_cast<Random::result_type>(count));
}

WalkValue randomValue(Random& random, FieldKind kind) {
  switch (kind) {
    case FieldKind::small:
      return randomNumber(random, 32'767);
    case FieldKind::real:
      return randomReal(random);
    case FieldKind::text:
      return randomText(random, 4);
    case FieldKind::longText:
      return randomText(random, 30);
    case FieldKind::flag:
      return below(random, 2) == 0 ? WalkValue{L"0", "0"} : WalkValue{L"-1", "1"};
    case FieldKind::date:
      return below(random, 4) == 0 ? WalkValue{L"None", "NULL"} : randomDate(random);
    case FieldKind::id:
    case FieldKind::whole:
      break;
  }
  return randomNumber(random, 1'000'000'000);
}

int WalkTable::controlOf(std::size_t field) const {
  int text = kFirstTextEditorId;
  int flag = kFirstCheckBoxId;
  int date = kFirstDateEditorId;
  for (std::size_t i = 0;; ++i) {
    int& next = kinds[i] == FieldKind::flag ? flag : kinds[i] == FieldKind::date ? date : text;
    if (i == field) return next;
    ++next;
  }
}

std::wstring WalkTable::fieldName(std::size_t field) const {
  return letter + std::to_wstring(field);
}

WalkTable* WalkDatabase::tableOf(wchar_t letter) {
  for (WalkTable& table : tables) {
    if (table.letter == letter) return &table;
  }
  return nullptr;
}

std::vector<WalkDatabase> makeWalkDatabases(const std::filesystem::path& folder, Random& random) {
  using enum FieldKind;
  const std::vector<FieldKind> every = {id, small, whole, real, text, longText, flag, date};
  std::vector<FieldKind> wide = {id};
  for (int i = 0; i < 30; ++i) wide.push_back(every[static_cast<std::size_t>(1 + below(random, 7))]);

  WalkDatabase large{folder / L"large.cdb", {}, {}};
  large.tables = {{L"People", L'p', every, {}},
                  {L"Wide One", L'w', wide, {}},
                  {L"Empty", L'e', every, {}},
                  {L"Many", L'm', {id, text}, {}}};
  large.queries = {{L"backwards", L"Select * from [People] order by p0 desc"},
                   {L"later ones", L"Select * from [Wide One] where w0 > 5"},
                   {L"read only", L"Select p.p0 as j0, m.m1 as j1 from People p join Many m on p.p0 = m.m0"},
                   {L"wrong", L"Select nothing"}};
  fillRandomly(large.tables[0], 40, random);
  fillRandomly(large.tables[1], 15, random);
  fillRandomly(large.tables[3], 2'000, random);

  WalkDatabase small_{folder / L"small.cdb", {{L"Solo", L's', every, {}}}, {}};
  fillRandomly(small_.tables[0], 3, random);

  std::vector<WalkDatabase> databases = {large, small_};
  for (const WalkDatabase& database : databases) write(database);
  return databases;
}

void expectStored(const WalkDatabase& database) {
  SqliteFile file(database.path.wstring());
  EXPECT_EQ(file.column("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
  for (const WalkTable& table : database.tables) {
    for (std::size_t field = 0; field < table.kinds.size(); ++field) {
      std::vector<std::string> expected;
      for (const auto& [id, record] : table.records) expected.push_back(record[field].quoted);
      const std::string name = utf8(table.fieldName(field));
      EXPECT_EQ(file.column("SELECT quote(" + name + ") FROM [" + utf8(table.name) + "] ORDER BY " +
                            utf8(table.fieldName(0))),
                expected)
          << name;
    }
  }
}
