// A walk over the records of every table of a database in the real program: what the grid, the form and the
// zoom show is what another program reads in the file. The example is walked in samples; the databases that
// QUIVANE_WALK_FILES names, separated by semicolons, are walked whole.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <sqlite3.h>
#include <sstream>

#include "base/showable_text.h"
#include "resources/command_ids.h"
#include "tests/ui/ui_test.h"

namespace {

constexpr int kFirstTextEditor = 1200;
constexpr int kFirstCheckBox = 1400;
constexpr int kFirstDateEditor = 1600;
constexpr int kZoomText = 1015;
constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max();

/// So much of the beginning of a text is compared; controls shorten and break what is longer.
constexpr std::size_t kComparedCount = 20;

enum class Kind { text, binary, number, date, check };

struct Value {
  int type = SQLITE_NULL;
  std::wstring text;
};

struct Table {
  std::vector<Kind> kinds;
  std::vector<std::vector<Value>> records;
};

std::wstring wide(const char* text) {
  const int count = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(std::max(count, 1)) - 1, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text, -1, result.data(), count);
  return result;
}

std::string narrow(const std::wstring& text) {
  const std::u8string bytes = std::filesystem::path(text).u8string();
  return {bytes.begin(), bytes.end()};
}

Kind kindOf(std::string declared) {
  std::transform(declared.begin(), declared.end(), declared.begin(), [](char c) { return std::toupper(c); });
  const auto has = [&](const char* part) { return declared.find(part) != std::string::npos; };
  if (has("BINARY") || has("BLOB")) return Kind::binary;
  if (has("CHAR") || has("TEXT") || has("INT")) return Kind::text;
  if (has("BIT") || has("BOOL")) return Kind::check;
  if (has("DATE") || has("TIME")) return Kind::date;
  return Kind::number;
}

/// The first bytes as pairs of digits, no more than are compared of a text.
std::wstring pairsOf(sqlite3_stmt* rows, int column) {
  const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(rows, column));
  const int count = std::min(sqlite3_column_bytes(rows, column), static_cast<int>(kComparedCount) / 3);
  std::wstring pairs;
  for (int i = 0; i < count; ++i) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    if (i != 0) pairs += L' ';
    pairs += kDigits[bytes[i] >> 4];
    pairs += kDigits[bytes[i] & 15];
  }
  return pairs;
}

Table readTable(const std::filesystem::path& path, const std::wstring& name) {
  Table table;
  sqlite3* file = nullptr;
  sqlite3_stmt* rows = nullptr;
  const std::string sql = "SELECT * FROM [" + narrow(name) + "]";
  EXPECT_EQ(sqlite3_open(narrow(path.wstring()).c_str(), &file), SQLITE_OK);
  EXPECT_EQ(sqlite3_prepare_v2(file, sql.c_str(), -1, &rows, nullptr), SQLITE_OK) << sql;
  const int count = sqlite3_column_count(rows);
  for (int column = 0; column < count; ++column) {
    const char* declared = sqlite3_column_decltype(rows, column);
    table.kinds.push_back(kindOf(declared ? declared : ""));
  }
  while (sqlite3_step(rows) == SQLITE_ROW) {
    std::vector<Value>& record = table.records.emplace_back();
    for (int column = 0; column < count; ++column) {
      const int type = sqlite3_column_type(rows, column);
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(rows, column));
      record.push_back({type, type == SQLITE_BLOB ? pairsOf(rows, column) : text ? wide(text) : L""});
    }
  }
  sqlite3_finalize(rows);
  EXPECT_EQ(sqlite3_close(file), SQLITE_OK);
  return table;
}

/// What `shown` has to begin with.
std::wstring beginningOf(const Value& value) {
  const std::wstring line = value.text.substr(0, value.text.find_first_of(L"\r\n\t"));
  return showableText(line.substr(0, kComparedCount).c_str());
}

bool shows(const std::wstring& shown, const Value& value, Kind kind) {
  if (shown == L"<not readable>" || shown == L"<not recognised>") return false;
  if (kind == Kind::check) {
    const bool isSet = value.type != SQLITE_NULL && value.text != L"0" && !value.text.empty();
    return shown == (isSet ? L"True" : L"False");
  }
  if (value.type == SQLITE_NULL) return shown == (kind == Kind::date ? L"None" : L"");
  if (kind == Kind::date) return !shown.empty() && shown != L"None";
  if (kind == Kind::number && value.type != SQLITE_TEXT) {
    return std::abs(std::wcstod(shown.c_str(), nullptr) - std::wcstod(value.text.c_str(), nullptr)) < 1e-6;
  }
  return value.text.empty() ? shown.empty() : shown.starts_with(beginningOf(value));
}

/// At most `most` places, evenly spread from the first to the last.
std::vector<std::size_t> sampleOf(std::size_t count, std::size_t most) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < std::min(count, most); ++i)
    places.push_back(count <= most ? i : i * (count - 1) / (most - 1));
  return places;
}

class RecordWalkTest : public UiTest {
 protected:
  /// Walks over a copy of the file; over at most `most` records of each table on each page.
  void walk(const std::filesystem::path& original, std::size_t most) {
    path_ = file("walked.cdb");
    std::filesystem::copy_file(original, path_, std::filesystem::copy_options::overwrite_existing);
    opened_.emplace(path_);
    ASSERT_NE(opened_->tables(), nullptr);
    const std::vector<std::wstring> names = remote::itemTexts(opened_->tables());
    ASSERT_FALSE(names.empty());
    for (std::size_t i = 0; i < names.size(); ++i) {
      SCOPED_TRACE(narrow(names[i]));
      table_ = readTable(path_, names[i]);
      ASSERT_NO_FATAL_FAILURE(walkGrid(static_cast<int>(i), most));
      if (table_.records.empty()) continue;
      ASSERT_NO_FATAL_FAILURE(walkForm(most));
    }
    EXPECT_EQ(remote::close(opened_->main()), 0u);
    opened_.reset();
    std::printf("[          ] %zu values compared\n", compared_);
  }
  std::size_t compared() const { return compared_; }

 private:
  void walkGrid(int tableIndex, std::size_t most) {
    const HWND grid = opened_->showRecords(tableIndex);
    ASSERT_NE(grid, nullptr);
    ASSERT_EQ(static_cast<std::size_t>(remote::itemCount(grid)), table_.records.size());
    const std::vector<std::size_t> rows = sampleOf(table_.records.size(), most);
    for (std::size_t sliding = 1;; ++sliding) {
      const int columns = remote::columnCount(grid);
      for (const std::size_t row : rows) {
        for (int column = 0; column < columns; ++column) {
          if (column == 0 && sliding > 1) continue;
          const std::size_t field = column == 0 ? 0 : sliding + static_cast<std::size_t>(column) - 1;
          expectShown(remote::itemText(grid, static_cast<int>(row), column), row, field, "grid");
        }
      }
      ASSERT_FALSE(HasFailure());
      if (sliding + 2 >= table_.kinds.size()) break;
      sendCommand(opened_->main(), ID_COLUMN_NEXT);
    }
    if (!rows.empty()) remote::selectItem(grid, 0);
  }

  void walkForm(std::size_t most) {
    ASSERT_TRUE(remote::switchToPage(opened_->main(), OpenedDatabase::kFormPage));
    const std::size_t count = table_.records.size();
    const std::size_t onwards = std::min(count, most);
    for (std::size_t record = 0; record < onwards; ++record) {
      if (record > 0) sendCommand(opened_->main(), ID_RECORD_NEXT);
      ASSERT_NO_FATAL_FAILURE(compareForm(record));
      if (record == 1) zoomEveryText(record);
    }
    sendCommand(opened_->main(), ID_RECORD_LAST);
    for (std::size_t record = count; record-- > std::max(onwards, count - std::min<std::size_t>(count, 5));) {
      ASSERT_NO_FATAL_FAILURE(compareForm(record));
      if (record > onwards) sendCommand(opened_->main(), ID_RECORD_PREVIOUS);
    }
    sendCommand(opened_->main(), ID_RECORD_LAST);
    zoomEveryText(count - 1);
  }

  void compareForm(std::size_t record) {
    int texts = kFirstTextEditor;
    int checks = kFirstCheckBox;
    int dates = kFirstDateEditor;
    for (std::size_t field = 0; field < table_.kinds.size(); ++field) {
      const Kind kind = table_.kinds[field];
      const int id = kind == Kind::check ? checks++ : kind == Kind::date ? dates++ : texts++;
      const HWND editor = remote::control(opened_->main(), id);
      ASSERT_NE(editor, nullptr) << field;
      std::wstring shown = remote::text(editor);
      if (kind == Kind::check)
        shown = SendMessageW(editor, BM_GETCHECK, 0, 0) == BST_CHECKED ? L"True" : L"False";
      expectShown(shown, record, field, "form");
    }
    ASSERT_FALSE(HasFailure());
  }

  /// Taps twice on each text editor of the form, on its pages one after another.
  void zoomEveryText(std::size_t record) {
    const HWND main = opened_->main();
    int id = kFirstTextEditor;
    for (std::size_t field = 0; field < table_.kinds.size(); ++field) {
      if (table_.kinds[field] == Kind::check || table_.kinds[field] == Kind::date) continue;
      const HWND editor = remote::control(main, id++);
      if (!IsWindowVisible(editor)) sendCommand(main, ID_PAGE_NEXT);
      ASSERT_TRUE(IsWindowVisible(editor)) << field;
      remote::clickControl(editor);
      remote::clickControl(editor);
      HWND zoom = nullptr;
      ASSERT_TRUE(remote::waitUntil([&] {
        zoom = remote::dialog(opened_->program().processId(), nullptr);
        return remote::shownControl(zoom, kZoomText) != nullptr;
      })) << field;
      expectShown(remote::text(remote::control(zoom, kZoomText)), record, field, "zoom");
      SendMessageW(zoom, WM_COMMAND, IDCANCEL, 0);
      ASSERT_TRUE(remote::waitUntil([&] { return IsWindowEnabled(main) != FALSE && !IsWindow(zoom); }))
          << field;
    }
    while (!IsWindowVisible(remote::control(main, kFirstTextEditor)) && isRunning())
      sendCommand(main, ID_PAGE_PREVIOUS);
  }

  bool isRunning() { return opened_->program().isRunning(); }

  void expectShown(const std::wstring& shown, std::size_t record, std::size_t field, const char* where) {
    ++compared_;
    const Value& value = table_.records[record][field];
    EXPECT_TRUE(shows(shown, value, table_.kinds[field]))
        << where << ", record " << record + 1 << ", field " << field << ": " << narrow(shown) << " for "
        << narrow(value.text);
    ASSERT_TRUE(isRunning());
  }

  std::filesystem::path path_;
  std::optional<OpenedDatabase> opened_;
  Table table_;
  std::size_t compared_ = 0;
};

TEST_F(RecordWalkTest, TheExampleIsShownAsItIs) {
  const wchar_t* const example = _wgetenv(L"QUIVANE_EXAMPLE");
  ASSERT_NE(example, nullptr);
  walk(example, 12);
  EXPECT_GT(compared(), 2000u);
}

TEST_F(RecordWalkTest, TheDatabasesThatAreNamedAreShownAsTheyAre) {
  const wchar_t* const named = _wgetenv(L"QUIVANE_WALK_FILES");
  if (!named) GTEST_SKIP() << "QUIVANE_WALK_FILES names none";
  std::wistringstream files(named);
  for (std::wstring name; std::getline(files, name, L';');) {
    SCOPED_TRACE(narrow(name));
    walk(name, kWhole);
  }
}

}  // namespace
