// A walk over every record of every table of a database in the whole program: what the grid, the form and the
// zoom show is what another program reads in the file. The example is walked, and the databases that
// QUIVANE_WALK_FILES names, separated by semicolons.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <sstream>
#include <string>
#include <vector>

#include "app/window/program_state.h"
#include "base/settings/settings_store.h"
#include "base/showable_text.h"
#include "gtest/gtest.h"
#include "resources/command_ids.h"
#include "tests/support/paths.h"
#include "tests/ui/program/states/page_window.h"
#include "tests/ui/remote/program_thread.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/text_field_editor.h"
#include "views/grid/record_list_view.h"

namespace {

constexpr int kTablesPage = 0;
constexpr int kFormPage = 1;
constexpr int kListPage = 2;

constexpr int kFirstTextEditor = 1200;
constexpr int kFirstCheckBox = 1400;
constexpr int kFirstDateEditor = 1600;
constexpr int kZoomText = 1015;
constexpr int kZoomPicture = 1016;

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

class RecordWalkTest : public testing::Test {
 protected:
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  /// Walks over a copy of the file.
  void walk(const std::filesystem::path& original) {
    const testsupport::TempFolder folder;
    const std::filesystem::path path = folder.file("walked.cdb");
    std::filesystem::copy_file(original, path);
    ProgramThread program(L"\"" + path.wstring() + L"\"");
    const HWND main = program.waitForPage();
    ASSERT_NE(main, nullptr);
    const ThreadCaller caller(main);
    const PromptAnswers answers;
    std::vector<std::wstring> names;
    caller.call([&] {
      for (std::uint32_t i = 0; i < theDocument->tableNames().size(); ++i)
        names.emplace_back(theDocument->tableNames()[i].text());
    });
    ASSERT_FALSE(names.empty());
    for (std::size_t i = 0; i < names.size() && !HasFatalFailure(); ++i) {
      SCOPED_TRACE(narrow(names[i]));
      table_ = readTable(path, names[i]);
      caller.call([&] {
        walkGrid(static_cast<int>(i));
        if (!table_.records.empty() && !HasFailure()) walkForm();
      });
      ASSERT_FALSE(HasFailure());
    }
    EXPECT_EQ(PromptAnswers::takeBoxes(), std::vector<std::wstring>());
    std::printf("[          ] %zu values compared\n", compared_);
  }
  std::size_t compared() const { return compared_; }

 private:
  static std::wstring cell(HWND grid, std::size_t row, int column) {
    wchar_t text[512] = L"";
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = ARRAYSIZE(text);
    SendMessageW(grid, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return text;
  }

  void walkGrid(int tableIndex) {
    pagewindow::clickTab(kTablesPage);
    pagewindow::tapName(tableIndex);
    pagewindow::clickTab(kListPage);
    const HWND grid = GetDlgItem(tabControl, RecordListView::kListId);
    ASSERT_NE(grid, nullptr);
    ASSERT_EQ(static_cast<std::size_t>(SendMessageW(grid, LVM_GETITEMCOUNT, 0, 0)), table_.records.size());
    for (std::size_t sliding = 1;; ++sliding) {
      const auto header = reinterpret_cast<HWND>(SendMessageW(grid, LVM_GETHEADER, 0, 0));
      const auto columns = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
      for (std::size_t row = 0; row < table_.records.size(); ++row) {
        for (int column = sliding > 1 ? 1 : 0; column < columns; ++column) {
          const std::size_t field = column == 0 ? 0 : sliding + static_cast<std::size_t>(column) - 1;
          expectShown(cell(grid, row, column), row, field, "grid");
        }
      }
      ASSERT_FALSE(HasFailure());
      if (sliding + 2 >= table_.kinds.size()) break;
      pagewindow::command(ID_COLUMN_NEXT);
    }
    pagewindow::tapRow(0);
  }

  /// To the last record, and some of the way back.
  void walkForm() {
    pagewindow::clickTab(kFormPage);
    pagewindow::command(ID_RECORD_FIRST);
    const std::size_t count = table_.records.size();
    for (std::size_t record = 0; record < count; ++record) {
      if (record > 0) pagewindow::command(ID_RECORD_NEXT);
      compareForm(record);
      ASSERT_FALSE(HasFailure());
      zoomFields(record);
      ASSERT_FALSE(HasFailure());
    }
    constexpr std::size_t kBack = 20;
    for (std::size_t record = count; record-- > count - std::min(count, kBack);) {
      compareForm(record);
      ASSERT_FALSE(HasFailure());
      pagewindow::command(ID_RECORD_PREVIOUS);
    }
  }

  void compareForm(std::size_t record) {
    int texts = kFirstTextEditor;
    int checks = kFirstCheckBox;
    int dates = kFirstDateEditor;
    for (std::size_t field = 0; field < table_.kinds.size(); ++field) {
      const Kind kind = table_.kinds[field];
      const int id = kind == Kind::check ? checks++ : kind == Kind::date ? dates++ : texts++;
      const HWND editor = remote::control(mainWindow, id);
      ASSERT_NE(editor, nullptr) << field;
      std::wstring shown = textOf(editor);
      if (kind == Kind::check)
        shown = SendMessageW(editor, BM_GETCHECK, 0, 0) == BST_CHECKED ? L"True" : L"False";
      expectShown(shown, record, field, "form");
    }
  }

  /// Of the first and the last record all texts, of every tenth between them one, each field in its turn.
  void zoomFields(std::size_t record) {
    const bool zoomsAll = record == 0 || record + 1 == table_.records.size();
    if (!zoomsAll && record % 10 != 0) return;
    int id = kFirstTextEditor;
    for (std::size_t field = 0; field < table_.kinds.size(); ++field) {
      if (table_.kinds[field] == Kind::check || table_.kinds[field] == Kind::date) continue;
      const HWND editor = remote::control(mainWindow, id++);
      if (!zoomsAll && record / 10 % table_.kinds.size() != field) continue;
      std::optional<std::wstring> shown;
      bool isPicture = false;
      {
        const DialogScript script([&](HWND zoom) {
          shown = textOf(GetDlgItem(zoom, kZoomText));
          isPicture = IsWindowVisible(GetDlgItem(zoom, kZoomPicture)) != FALSE;
          DialogScript::close(zoom, IDCANCEL);
        });
        SendMessageW(editor, kZoomMessage, 0, 0);
      }
      ASSERT_TRUE(shown.has_value()) << field;
      if (isPicture) {
        expectPicture(record, field);
      } else {
        expectShown(*shown, record, field, "zoom");
      }
    }
  }

  void expectShown(const std::wstring& shown, std::size_t record, std::size_t field, const char* where) {
    ++compared_;
    const Value& value = table_.records[record][field];
    EXPECT_TRUE(shows(shown, value, table_.kinds[field]))
        << where << ", record " << record + 1 << ", field " << field << ": " << narrow(shown) << " for "
        << narrow(value.text);
  }

  /// Which bytes those of a picture begin with, as the walk's values have them.
  void expectPicture(std::size_t record, std::size_t field) {
    ++compared_;
    const std::wstring& text = table_.records[record][field].text;
    const bool isOne = text.starts_with(L"42 4D") || text.starts_with(L"89 50 4E 47") ||
                       text.starts_with(L"FF D8") || text.starts_with(L"47 49 46");
    EXPECT_TRUE(isOne) << "record " << record + 1 << ", field " << field << ": " << narrow(text);
  }

  Table table_;
  std::size_t compared_ = 0;
};

TEST_F(RecordWalkTest, TheExampleIsShownAsItIs) {
  const wchar_t* const example = _wgetenv(L"QUIVANE_EXAMPLE");
  ASSERT_NE(example, nullptr);
  walk(example);
  EXPECT_GT(compared(), 50'000u);
}

TEST_F(RecordWalkTest, TheDatabasesThatAreNamedAreShownAsTheyAre) {
  const wchar_t* const named = _wgetenv(L"QUIVANE_WALK_FILES");
  if (!named) GTEST_SKIP() << "QUIVANE_WALK_FILES names none";
  std::wistringstream files(named);
  for (std::wstring name; std::getline(files, name, L';');) {
    SCOPED_TRACE(narrow(name));
    walk(name);
  }
}

}  // namespace
