// Files of a size that nobody would make by hand, in the real program.
#include <cstdlib>
#include <string>

#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace {

using HostileSizeTest = UiTest;

TEST_F(HostileSizeTest, FiveThousandTablesAreListedWithoutAWait) {
  const std::filesystem::path path = file("many.cdb");
  std::string tables = "BEGIN;";
  for (int number = 0; number < 5000; ++number) {
    tables += "CREATE TABLE [Table " + std::to_string(number) + "] (a Integer);";
  }
  automationtest::SqliteFile(path.wstring()).run(tables + "COMMIT");
  const ULONGLONG begin = GetTickCount64();
  OpenedDatabase opened(path);
  ASSERT_TRUE(opened.tables());
  EXPECT_EQ(remote::itemCount(opened.tables()), 5000);
  // No speed, but a hang: less than one on an idle machine, 25 and more where each name comes with a scroll
  // bar of its own. A message that is sent waits for as long as that takes.
  EXPECT_LT(GetTickCount64() - begin, 10'000u);
  ASSERT_TRUE(remote::selectItem(opened.tables(), 4999));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
}

// ---- Names and values

class HostileShapeTest : public UiTest {
 protected:
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }
};

/// Three hundred characters of all that a name should not have.
std::string hostileName(const std::string& start) {
  std::string name = start;
  int count = static_cast<int>(start.size());
  for (; count + 7 <= 300; count += 7) name += "\"']`\xF0\x9F\x98\x80\n";
  return name + std::string(static_cast<std::size_t>(300 - count), '[');
}

std::string quotedName(const std::string& name) {
  std::string quoted = "\"";
  for (const char character : name) quoted += character == '"' ? "\"\"" : std::string(1, character);
  return quoted + "\"";
}

TEST_F(HostileShapeTest, NamesOfEverythingThatANameShouldNotHave) {
  const std::filesystem::path path = file("names.cdb");
  automationtest::SqliteFile(path.wstring())
      .run("CREATE TABLE " + quotedName(hostileName("a")) + " (" + quotedName(hostileName("f")) +
           " Text, \"b]c[d\" Text); INSERT INTO " + quotedName(hostileName("a")) +
           " VALUES ('of the name', 'other'); CREATE TABLE \"a]b[c\" (Name Text); INSERT INTO \"a]b[c\" "
           "VALUES "
           "('in brackets'); CREATE TABLE Plain (Name Text); INSERT INTO Plain VALUES ('plain')");
  OpenedDatabase opened(path);
  ASSERT_TRUE(opened.tables());
  ASSERT_EQ(remote::itemCount(opened.tables()), 3);
  int shown = 0;
  for (int table = 0; table < 3; ++table) {
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
    ASSERT_TRUE(remote::selectItem(opened.tables(), table));
    ASSERT_TRUE(remote::clickTab(remote::tabControl(opened.main()), OpenedDatabase::kFormPage));
    // Either its records are shown, or it is said that they can't be opened.
    HWND box = nullptr;
    std::wstring text;
    ASSERT_TRUE(remote::waitUntil([&] {
      box = remote::messageBox(opened.program().processId());
      const HWND editor = remote::shownControl(opened.main(), 1200);
      text = editor != nullptr ? remote::text(editor) : L"";
      return box != nullptr || !text.empty();
    })) << table;
    if (box != nullptr) {
      EXPECT_THAT(remote::messageBoxText(box), testing::StartsWith(L"The records could not be opened.\n"));
      std::printf("table %d: %ls\n", table, remote::messageBoxText(box).c_str());
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      ASSERT_TRUE(remote::waitForMain(opened.main()));
    } else {
      ++shown;
      std::printf("table %d: shown\n", table);
    }
  }
  EXPECT_GE(shown, 1);
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

// Where every field has its window from the start this takes longer than anybody waits.
TEST_F(HostileShapeTest, ATableOfTwoThousandColumns) {
  const std::filesystem::path path = file("wide.cdb");
  std::string columns = "c0 Text";
  for (int column = 1; column < 2000; ++column) columns += ", c" + std::to_string(column) + " Text";
  automationtest::SqliteFile(path.wstring())
      .run("CREATE TABLE Wide (" + columns +
           "); INSERT INTO Wide (c0, c1999) VALUES ('first', 'last of first'), ('second', 'last')");
  OpenedDatabase opened(path);
  ASSERT_TRUE(opened.tables());
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  const HWND name = remote::control(opened.main(), 1200);
  EXPECT_EQ(remote::text(name), L"first");
  SendMessageW(name, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  SendMessageW(name, WM_LBUTTONUP, 0, 0);
  SendMessageW(name, EM_SETSEL, 0, -1);
  for (const wchar_t character : std::wstring(L"changed")) SendMessageW(name, WM_CHAR, character, 1);
  sendCommand(opened.main(), ID_RECORD_NEXT);
  EXPECT_EQ(remote::text(name), L"second");
  for (int page = 0; page < 30; ++page) sendCommand(opened.main(), ID_PAGE_NEXT);
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(automationtest::sqliteColumn(path.wstring(), "SELECT c0 || ', ' || c1999 FROM Wide"),
              testing::ElementsAre("changed, last of first", "second, last"));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

/// 30; QUIVANE_TEXT_MEGABYTES makes it 300, which takes the disk long.
std::string wantedMegabytes() {
  const char* const megabytes = std::getenv("QUIVANE_TEXT_MEGABYTES");
  return std::to_string(megabytes != nullptr ? std::atoi(megabytes) : 30);
}

TEST_F(HostileShapeTest, ATextOfManyMegabytes) {
  const std::string length = wantedMegabytes() + "000000";
  const std::filesystem::path path = file("long.cdb");
  automationtest::SqliteFile(path.wstring())
      .run(
          "PRAGMA synchronous = OFF; CREATE TABLE Long (Name Text, Content Text); INSERT INTO Long VALUES "
          "('short', "
          "'x'), ('long', printf('%.*c', " +
          length + ", 'x')), ('after', 'x')");
  OpenedDatabase opened(path);
  ASSERT_TRUE(opened.tables());
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  const HWND name = remote::control(opened.main(), 1200);
  sendCommand(opened.main(), ID_RECORD_NEXT);
  ASSERT_EQ(remote::text(name), L"long");
  const HWND content = remote::control(opened.main(), 1201);
  for (int tap = 0; tap < 2; ++tap) PostMessageW(content, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  HWND zoom = nullptr;
  ASSERT_TRUE(
      remote::waitUntil([&] { return (zoom = remote::frontWindow(opened.main())) != opened.main(); }));
  EXPECT_THAT(remote::text(zoom),
              testing::HasSubstr(L"the first 100000 of " + std::wstring(length.begin(), length.end())));
  PostMessageW(zoom, WM_COMMAND, IDCANCEL, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return !IsWindow(zoom) && IsWindowEnabled(opened.main()) != FALSE; }));
  SendMessageW(name, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  SendMessageW(name, WM_LBUTTONUP, 0, 0);
  SendMessageW(name, EM_SETSEL, 0, -1);
  for (const wchar_t character : std::wstring(L"changed")) SendMessageW(name, WM_CHAR, character, 1);
  sendCommand(opened.main(), ID_RECORD_NEXT);
  EXPECT_EQ(remote::text(name), L"after");
  EXPECT_THAT(
      automationtest::sqliteColumn(path.wstring(), "SELECT Name || length(Content) FROM Long ORDER BY rowid"),
      testing::ElementsAre("short1", "changed" + length, "after1"));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

}  // namespace
