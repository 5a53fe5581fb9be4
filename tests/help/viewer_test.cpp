// The real help viewer, with a script in the place of the user's browser.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "owners/handles.h"
#include "platform/help/help_address.h"
#include "tests/support/paths.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/remote/running_program.h"

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kMainTopic[] = L"\\Windows\\file:Quivane.htm#Main_Contents";
constexpr wchar_t kQueriesTopic[] = L"\\Windows\\file:Quivane.htm#Queries";

std::string textOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ViewerTest : public testing::Test {
 protected:
  void SetUp() override {
    // A folder whose name has to be escaped.
    fs::create_directory(place_);
    fs::copy_file(testsupport::binFolder() / "peghelp.exe", viewer());
    std::ofstream(manual()) << "<!DOCTYPE html>\n";
    useBrowsers(browserScript());
    fs::remove(note());
  }
  void TearDown() override { fs::remove(note()); }

  fs::path viewer() const { return place_ / "peghelp.exe"; }
  fs::path manual() const { return place_ / "Quivane.htm"; }
  /// Where tests/help/note_browser.sh writes.
  static fs::path note() { return L"C:\\browser note.txt"; }

  static std::wstring browserScript() {
    wchar_t script[MAX_PATH] = L"";
    EXPECT_NE(GetEnvironmentVariableW(L"QUIVANE_BROWSER", script, ARRAYSIZE(script)), 0u);
    return script;
  }

  /// What Wine tries, one after the other, to show a page.
  static void useBrowsers(const std::wstring& browsers) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Wine\\WineBrowser", L"Browsers", REG_SZ,
                              browsers.c_str(), static_cast<DWORD>((browsers.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
  }

  static std::wstring unixText(const fs::path& path) { return help::nameForUser(path); }

  /// The address that the browser was started with; empty when that takes too long.
  static std::string shownAddress() {
    if (!remote::waitUntil([] { return fs::exists(note()); })) return {};
    return textOf(note());
  }

  /// The message of a viewer that shows nothing, after it was read and closed.
  static std::wstring closeMessage(const RunningProgram& viewer) {
    const HWND box = viewer.messageBox();
    if (!box) return L"(no message)";
    std::wstring text = remote::messageBoxText(box);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    return text;
  }

  testsupport::TempFolder folder_;
  fs::path place_ = folder_.path() / L"a b #1 \u00fc\u65e5";
};

TEST_F(ViewerTest, TheContentsAreTheManualItself) {
  const RunningProgram viewer(this->viewer(), kMainTopic);
  EXPECT_EQ(viewer.exitCode(), 0u);
  EXPECT_EQ(shownAddress(), help::addressOf(manual(), L""));
}

TEST_F(ViewerTest, AnotherTopicIsReachedByASignpost) {
  const RunningProgram viewer(this->viewer(), kQueriesTopic);
  EXPECT_EQ(viewer.exitCode(), 0u);
  const fs::path signpost = fs::temp_directory_path() / "Quivane Queries.htm";
  EXPECT_EQ(shownAddress(), help::addressOf(signpost, L""));
  EXPECT_EQ(textOf(signpost), help::signpostTo(help::addressOf(manual(), L"Queries")));
}

TEST_F(ViewerTest, TheTopicMayBeTheWholeCommandLine) {
  std::wstring line = kMainTopic;
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(CreateProcessW(viewer().c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &start, &process));
  const UniqueKernelObject thread(process.hThread);
  const UniqueKernelObject running(process.hProcess);
  EXPECT_EQ(shownAddress(), help::addressOf(manual(), L""));
  EXPECT_EQ(WaitForSingleObject(running.get(), 10'000), WAIT_OBJECT_0);
}

TEST_F(ViewerTest, AskedTwiceForATopicItShowsItTwice) {
  for (int round = 0; round < 2; ++round) {
    fs::remove(note());
    const RunningProgram viewer(this->viewer(), kQueriesTopic);
    EXPECT_EQ(viewer.exitCode(), 0u);
    EXPECT_FALSE(shownAddress().empty());
  }
}

TEST_F(ViewerTest, WithoutAPlaceForTheSignpostTheManualIsShown) {
  wchar_t temporary[MAX_PATH];
  ASSERT_NE(GetEnvironmentVariableW(L"TMP", temporary, ARRAYSIZE(temporary)), 0u);
  SetEnvironmentVariableW(L"TMP", folder_.file("not there").c_str());
  const RunningProgram viewer(this->viewer(), kQueriesTopic);
  SetEnvironmentVariableW(L"TMP", temporary);
  EXPECT_EQ(viewer.exitCode(), 0u);
  EXPECT_EQ(shownAddress(), help::addressOf(manual(), L""));
}

TEST_F(ViewerTest, AMissingManualIsTold) {
  fs::remove(manual());
  const RunningProgram viewer(this->viewer(), kMainTopic);
  EXPECT_EQ(closeMessage(viewer),
            L"The manual is missing. Please put it beside the program again:\n" + unixText(manual()));
  EXPECT_EQ(viewer.exitCode(), 1u);
  EXPECT_FALSE(fs::exists(note()));
}

TEST_F(ViewerTest, WithoutABrowserTheViewerTellsWhereTheManualIs) {
  useBrowsers(unixText(folder_.file("no browser")));
  for (const wchar_t* topic : {kMainTopic, kQueriesTopic}) {
    const RunningProgram viewer(this->viewer(), topic);
    EXPECT_EQ(
        closeMessage(viewer),
        L"Nothing was found that could show the manual. Please open it yourself:\n" + unixText(manual()));
    EXPECT_EQ(viewer.exitCode(), 1u);
  }
}

TEST_F(ViewerTest, NothingButTheManualIsOpened) {
  std::ofstream(folder_.file("secret.htm")) << "secret";
  const RunningProgram viewer(this->viewer(), L"\\Windows\\file:..\\secret.htm");
  EXPECT_EQ(viewer.exitCode(), 0u);
  EXPECT_EQ(shownAddress(), help::addressOf(manual(), L""));
}

TEST_F(ViewerTest, TheManualLiesBesideTheBuiltViewer) {
  const fs::path bin = testsupport::binFolder();
  EXPECT_TRUE(fs::exists(bin / "Quivane.htm"));
  EXPECT_TRUE(fs::exists(bin / "pictures" / "form.png"));
}

}  // namespace
