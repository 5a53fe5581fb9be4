// The form and the grid are walked and typed into while another process does to the file whatever it likes,
// at any moment: the program itself is that other process's neighbour, and this test is the other one.
#include <windows.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <sqlite3.h>
#include <string>
#include <thread>

#include "base/settings_store.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;

namespace {

constexpr int kId = 1200;
constexpr int kContent = 1201;
constexpr int kMark = 1202;
constexpr int kRows = 40;

/// SQLite by itself, whose failures count for nothing: the program may be using the file.
class OtherProgram {
 public:
  explicit OtherProgram(const fs::path& path) {
    const std::u8string name = path.u8string();
    sqlite3_open(reinterpret_cast<const char*>(name.c_str()), &connection_);
    sqlite3_busy_timeout(connection_, 300);
  }
  ~OtherProgram() { sqlite3_close(connection_); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  void run(const std::string& sql) { sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr); }
  std::string ask(const std::string& sql) {
    std::string answer = "(none)";
    sqlite3_exec(
        connection_, sql.c_str(),
        [](void* to, int, char** values, char**) {
          *static_cast<std::string*>(to) = values[0] != nullptr ? values[0] : "(null)";
          return 0;
        },
        &answer, nullptr);
    return answer;
  }

 private:
  sqlite3* connection_ = nullptr;
};

class OtherProgramsTest : public UiTest {
 protected:
  void SetUp() override {
    OtherProgram(path_).run(
        "CREATE TABLE T (Id Integer, Content Text, Mark Text); WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL "
        "SELECT i + "
        "1 FROM s WHERE i < " +
        std::to_string(kRows) + ") INSERT INTO T SELECT i, 'content of ' || i, '' FROM s");
  }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  // ---- The other program, on a thread of its own

  void disturb(const std::atomic<bool>& ends) {
    std::mt19937 random(99);
    const auto below = [&](int count) { return std::uniform_int_distribution(0, count - 1)(random); };
    int added = kRows;
    while (!ends) {
      Sleep(static_cast<DWORD>(below(30)));
      OtherProgram other(path_);
      const std::string id = std::to_string(1 + below(added));
      switch (below(7)) {
        case 0:
          other.run("DELETE FROM T WHERE Id = " + id + " AND rowid < (SELECT max(rowid) FROM T)");
          break;
        case 1:
          ++added;
          other.run("INSERT INTO T VALUES (" + std::to_string(added) + ", 'content of " +
                    std::to_string(added) + "', '')");
          break;
        case 2:
          other.run("UPDATE T SET Content = 'content of ' || Id WHERE Id = " + id);
          break;
        case 3:
          other.run("VACUUM");
          break;
        case 4:
          other.run("BEGIN EXCLUSIVE");
          Sleep(static_cast<DWORD>(below(400)));
          other.run("COMMIT");
          break;
        case 5:
          other.run(
              "BEGIN IMMEDIATE; CREATE TABLE U AS SELECT * FROM T ORDER BY random(); DELETE FROM T; INSERT "
              "INTO "
              "T SELECT * FROM U; DROP TABLE U; COMMIT");
          break;
        default:
          other.run("ALTER TABLE T ADD COLUMN More Text DEFAULT 'more'");
          other.run("ALTER TABLE T DROP COLUMN More");
          break;
      }
    }
  }

  // ---- The user

  HWND main() const { return opened_->main(); }
  HWND control(int id) const { return remote::control(main(), id); }
  std::wstring shown(int id) const {
    const HWND editor = control(id);
    return editor != nullptr ? remote::text(editor) : L"";
  }

  /// Sends a message, and answers what is asked until it is done. What was typed has to stand there as long
  /// as he is asked about it.
  void give(HWND window, UINT message, WPARAM parameter, const std::wstring& typed, bool* discarded) {
    std::atomic<bool> isDone{false};
    std::thread sender([&] {
      SendMessageW(window, message, parameter, 0);
      isDone = true;
    });
    const bool ends = remote::waitUntil(
        [&] {
          answer(typed, discarded);
          return isDone.load();
        },
        std::chrono::seconds(60));
    EXPECT_TRUE(ends) << "it hangs";
    if (!ends) TerminateProcess(opened_->program().processHandle(), 98);
    sender.join();
  }
  void answer(const std::wstring& typed, bool* discarded) {
    const HWND box = remote::messageBox(opened_->program().processId());
    if (box == nullptr) return;
    ++boxes_;
    const std::wstring text = remote::messageBoxText(box);
    const bool asks = text.find(L"Do you want to discard") != std::wstring::npos;
    if (asks) {
      EXPECT_EQ(shown(kMark), typed) << "what was typed has gone before it was discarded";
      *discarded = true;
    }
    PostMessageW(box, WM_COMMAND, asks ? IDYES : IDOK, 0);
    remote::waitUntil([&] { return !IsWindow(box); });
  }
  void showPage(int page, bool* discarded) {
    const HWND tab = remote::tabControl(main());
    const RECT place = remote::tabPlace(tab, page);
    const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    PostMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, point);
    PostMessageW(tab, WM_LBUTTONUP, 0, point);
    EXPECT_TRUE(remote::waitUntil(
        [&] {
          answer(shown(kMark), discarded);
          return remote::selectedTab(tab) == page;
        },
        std::chrono::seconds(60)));
    // A command without effect comes to its end behind the switch.
    give(main(), WM_COMMAND, ID_ENTER, shown(kMark), discarded);
  }

  void checkForm() {
    const std::wstring id = shown(kId);
    const std::wstring content = shown(kContent);
    const std::wstring mark = shown(kMark);
    if (id.empty()) return;
    ++readings_;
    EXPECT_EQ(content, L"content of " + id);
    EXPECT_TRUE(mark.empty() || mark.starts_with(L"mark " + id + L" "))
        << testing::PrintToString(mark) << " of " << testing::PrintToString(id);
  }

  const fs::path path_ = file("shared.cdb");
  std::optional<OpenedDatabase> opened_;
  int boxes_ = 0;
  int readings_ = 0;
};

TEST_F(OtherProgramsTest, NoRecordIsTakenForAnotherAndWhatWasTypedStays) {
  opened_.emplace(path_);
  ASSERT_TRUE(opened_->tables());
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  std::atomic<bool> ends{false};
  std::thread other([&] { disturb(ends); });
  const auto endOther = [&](void*) {
    ends = true;
    other.join();
  };
  std::unique_ptr<void, decltype(endOther)> whileItWorks(&other, endOther);
  std::mt19937 random(5);
  const auto below = [&](int count) { return std::uniform_int_distribution(0, count - 1)(random); };
  int marks = 0;
  int stored = 0;
  constexpr int kMoves[] = {ID_RECORD_FIRST, ID_RECORD_LAST, ID_RECORD_NEXT, ID_RECORD_NEXT,
                            ID_RECORD_PREVIOUS};
  const ULONGLONG begin = GetTickCount64();
  while (GetTickCount64() - begin < 15'000 && !HasFailure() && opened_->program().isRunning()) {
    bool discarded = false;
    checkForm();
    std::wstring typed = shown(kMark);
    const std::wstring id = shown(kId);
    const HWND editor = control(kMark);
    if (below(2) == 0 && !id.empty() && editor != nullptr) {
      typed = L"mark " + id + L" " + std::to_wstring(++marks);
      if (remote::focus(main()) != editor) remote::clickControl(editor);
      ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(main()) == editor; }));
      SendMessageW(editor, EM_SETSEL, 0, -1);
      for (const wchar_t character : typed) SendMessageW(editor, WM_CHAR, character, 1);
      // A record that can't be read takes nothing.
      if (shown(kMark) != typed)
        typed = shown(kMark);
      else
        ++stored;
    }
    give(main(), WM_COMMAND, static_cast<WPARAM>(kMoves[below(ARRAYSIZE(kMoves))]), typed, &discarded);
    if (discarded) --stored;
    if (below(20) == 0) {
      showPage(OpenedDatabase::kListPage, &discarded);
      showPage(OpenedDatabase::kFormPage, &discarded);
    }
  }
  whileItWorks.reset();
  EXPECT_TRUE(opened_->program().isRunning());
  EXPECT_EQ(remote::close(main()), 0u);
  std::printf("%d readings, %d stored, %d boxes\n", readings_, stored, boxes_);
  EXPECT_GT(readings_, 30);
  EXPECT_GT(stored, 5);
  OtherProgram file(path_);
  EXPECT_EQ(file.ask("PRAGMA integrity_check"), "ok");
  EXPECT_EQ(file.ask("SELECT count(*) FROM T WHERE Mark <> '' AND Mark NOT LIKE 'mark ' || Id || ' %'"), "0")
      << "written into another record";
  EXPECT_EQ(file.ask("SELECT count(*) FROM T WHERE Content <> 'content of ' || Id"), "0");
}

}  // namespace
