// Someone walks the records and types into them in the real program while another program, which is this
// test, does to the file whatever it likes.
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;
using automationtest::SqliteFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kId = 1200;
constexpr int kContent = 1201;
constexpr int kMark = 1202;
constexpr int kRows = 40;
constexpr int kDisturbances = 7;

class OtherProgramsTest : public UiTest {
 protected:
  void SetUp() override {
    SqliteFile(path_.wstring())
        .run(
            "CREATE TABLE T (Id Integer, Content Text, Mark Text); WITH RECURSIVE s(i) AS (SELECT 1 UNION "
            "ALL "
            "SELECT i + 1 FROM s WHERE i < " +
            std::to_string(kRows) + ") INSERT INTO T SELECT i, 'content of ' || i, '' FROM s");
  }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  // ---- The other program, on a thread of its own

  /// The program may be using the file: what fails is not done.
  void disturb(const std::atomic<bool>& ends) {
    std::mt19937 random(99);
    const auto below = [&](int count) { return std::uniform_int_distribution(0, count - 1)(random); };
    int added = kRows;
    while (!ends) {
      Sleep(static_cast<DWORD>(below(30)));
      SqliteFile other(path_.wstring());
      const auto run = [&other](const std::string& sql) { return other.tryRun(sql, 300); };
      const std::string id = std::to_string(1 + below(added));
      const auto kind = static_cast<std::size_t>(below(kDisturbances));
      bool isDone = false;
      switch (kind) {
        case 0:
          isDone = run("DELETE FROM T WHERE Id = " + id + " AND rowid < (SELECT max(rowid) FROM T)");
          break;
        case 1: {
          const std::string next = std::to_string(++added);
          isDone = run("INSERT INTO T VALUES (" + next + ", 'content of " + next + "', '')");
          break;
        }
        case 2:
          isDone = run("UPDATE T SET Content = 'content of ' || Id WHERE Id = " + id);
          break;
        case 3:
          isDone = run("VACUUM");
          break;
        case 4:
          isDone = run("BEGIN EXCLUSIVE");
          Sleep(static_cast<DWORD>(below(400)));
          isDone = isDone && run("COMMIT");
          break;
        case 5:
          isDone =
              run("BEGIN IMMEDIATE; CREATE TABLE U AS SELECT * FROM T ORDER BY random(); DELETE FROM T; "
                  "INSERT INTO T SELECT * FROM U; DROP TABLE U; COMMIT");
          break;
        default:
          isDone = run("ALTER TABLE T ADD COLUMN More Text DEFAULT 'more'");
          isDone = run("ALTER TABLE T DROP COLUMN More") && isDone;
          break;
      }
      if (isDone) ++done_[kind];
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
    expected_.erase(shown(kId));
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

  /// What the editors show of one record.
  struct Reading {
    std::wstring id;
    std::wstring content;
    std::wstring mark;
    bool operator==(const Reading&) const = default;
  };
  /// The program shows others' changes whenever it likes, between two of these questions, too: an answer is
  /// taken when it has come twice.
  Reading formReading() const {
    const auto read = [this] { return Reading{shown(kId), shown(kContent), shown(kMark)}; };
    Reading reading = read();
    EXPECT_TRUE(remote::waitUntil([&] {
      const Reading last = std::exchange(reading, read());
      return reading == last;
    }));
    return reading;
  }

  void check(const Reading& form) {
    if (form.id.empty()) return;
    ++readings_;
    EXPECT_EQ(form.content, L"content of " + form.id);
    EXPECT_TRUE(form.mark.empty() || form.mark.starts_with(L"mark " + form.id + L" "))
        << testing::PrintToString(form.mark) << " of " << testing::PrintToString(form.id);
  }

  static void typeInstead(HWND editor, const std::wstring& text) {
    SendMessageW(editor, EM_SETSEL, 0, -1);
    for (const wchar_t character : text) SendMessageW(editor, WM_CHAR, character, 1);
  }

  const fs::path path_ = file("shared.cdb");
  std::optional<OpenedDatabase> opened_;
  /// How often each was done to the end.
  std::array<std::atomic<int>, kDisturbances> done_{};
  /// What has to stand in the file, by Id: all that was typed and left without a word of the program.
  std::map<std::wstring, std::wstring> expected_;
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
  const auto isEnough = [&] {
    return readings_ >= 40 && stored >= 8 && expected_.size() >= 4 &&
           std::all_of(done_.begin(), done_.end(), [](const auto& times) { return times >= 3; });
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(50);
  while (!isEnough() && std::chrono::steady_clock::now() < end && !HasFailure() &&
         opened_->program().isRunning()) {
    bool discarded = false;
    Reading form = formReading();
    check(form);
    const HWND editor = control(kMark);
    if (below(2) == 0 && !form.id.empty() && editor != nullptr) {
      if (remote::focus(main()) != editor) remote::clickControl(editor);
      ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(main()) == editor; }));
      // What is begun holds the record that the form shows by now.
      typeInstead(editor, L"mark");
      form = formReading();
      const std::wstring typed = L"mark " + form.id + L" " + std::to_wstring(++marks);
      typeInstead(editor, typed);
      form.mark = shown(kMark);
      // A record that can't be read takes nothing.
      if (form.mark == typed) ++stored;
    }
    if (!form.id.empty() && !form.mark.empty()) expected_[form.id] = form.mark;
    const std::wstring typed = form.mark;
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
  EXPECT_TRUE(isEnough()) << readings_ << " readings, " << stored << " stored, " << expected_.size()
                          << " of them without a word, disturbed " << testing::PrintToString(done_);
  SqliteFile file(path_.wstring());
  EXPECT_THAT(file.column("PRAGMA integrity_check"), ElementsAre("ok"));
  EXPECT_THAT(file.column("SELECT Id FROM T WHERE Mark <> '' AND Mark NOT LIKE 'mark ' || Id || ' %'"),
              IsEmpty())
      << "written into another record";
  EXPECT_THAT(file.column("SELECT Id FROM T WHERE Content <> 'content of ' || Id"), IsEmpty());
  std::size_t kept = 0;
  for (const auto& [id, mark] : expected_) {
    // The other program may have deleted the record.
    const std::vector<std::string> found =
        file.column("SELECT Mark FROM T WHERE Id = " + std::filesystem::path(id).string());
    if (found.empty()) continue;
    ++kept;
    EXPECT_THAT(found, ElementsAre(std::filesystem::path(mark).string())) << "lost";
  }
  EXPECT_GT(kept, 0u);
}

}  // namespace
