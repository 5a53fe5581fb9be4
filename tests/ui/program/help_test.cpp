// The help viewer, as the real program starts it.
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "owners/handles.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;

namespace {

/// The program in a folder of its own, with or without a viewer beside it.
class HelpTest : public UiTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(registerBinComponents());
    fs::copy_file(programFile(), file("program.exe"));
    for (const wchar_t* module : {L"aygshell.dll", L"adoce31.dll"}) {
      fs::copy_file(testsupport::binFolder() / module, file("program.exe").parent_path() / module);
    }
  }
  void TearDown() override {
    SetEvent(release_.get());
    EXPECT_TRUE(registerBinComponents());
  }

  void installViewer() {
    fs::copy_file(testsupport::binFolder().parent_path() / "tests" / "fake_viewer.exe", viewer());
  }
  fs::path viewer() const { return file("peghelp.exe"); }

  /// Asks for help as the system does for the key of it. False when the program does not come back to it.
  static bool askForHelp(HWND main) {
    HELPINFO help{};
    help.cbSize = sizeof(help);
    constexpr UINT kPatience = 5'000;
    DWORD_PTR result = 1;
    return SendMessageTimeoutW(main, WM_HELP, 0, reinterpret_cast<LPARAM>(&help), SMTO_NORMAL, kPatience,
                               &result) != 0 &&
           result == 0;
  }

  /// The command line that the viewer was started with, once it has written it.
  std::wstring commandLineOfViewer() const {
    const fs::path note = viewer().wstring() + L".txt";
    remote::waitUntil([&] { return fs::exists(note) && fs::file_size(note) != 0; });
    std::ifstream stream(note, std::ios::binary);
    std::wstring line;
    for (wchar_t unit = 0; stream.read(reinterpret_cast<char*>(&unit), sizeof(unit));) line += unit;
    return line;
  }

  /// A running program can't be deleted.
  bool isViewerRunning() const {
    const UniqueFile opened(
        CreateFileW(viewer().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    return !opened;
  }
  void releaseViewer() const {
    SetEvent(release_.get());
    EXPECT_TRUE(remote::waitUntil([this] { return !isViewerRunning(); }));
  }

 private:
  UniqueKernelObject release_{CreateEventW(nullptr, TRUE, FALSE, L"Local\\Quivane.Test.ReleaseViewer")};
};

TEST_F(HelpTest, TheViewerIsStartedAndNotWaitedFor) {
  installViewer();
  RunningProgram program(file("program.exe"), L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  EXPECT_TRUE(askForHelp(main)) << "the viewer is waited for";
  EXPECT_EQ(commandLineOfViewer(), L"\\Windows\\file:Quivane.htm#Main_Contents");
  EXPECT_TRUE(isViewerRunning());
  EXPECT_EQ(remote::close(main), 0u) << "the viewer outlives the program";
  EXPECT_TRUE(isViewerRunning());
  releaseViewer();
}

TEST_F(HelpTest, AMissingViewerIsHarmless) {
  RunningProgram program(file("program.exe"), L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  EXPECT_TRUE(askForHelp(main));
  EXPECT_EQ(remote::messageBox(program.processId()), nullptr);
  EXPECT_TRUE(IsWindowEnabled(main));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(HelpTest, AViewerThatIsNoProgramIsHarmless) {
  std::ofstream(viewer()) << "not a program";
  RunningProgram program(file("program.exe"), L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  EXPECT_TRUE(askForHelp(main));
  EXPECT_EQ(remote::messageBox(program.processId()), nullptr);
  EXPECT_EQ(remote::close(main), 0u);
}

}  // namespace
