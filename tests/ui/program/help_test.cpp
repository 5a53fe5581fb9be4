// The help viewer, as the real program starts it.
#include <windows.h>

#include <fstream>

#include "tests/ui/support/viewer_test.h"

namespace {

using HelpTest = ViewerTest;

/// Asks for help as the system does for the key of it. False when the program does not come back to it.
bool askForHelp(HWND main) {
  HELPINFO help{};
  help.cbSize = sizeof(help);
  constexpr UINT kPatience = 5'000;
  DWORD_PTR result = 1;
  return SendMessageTimeoutW(main, WM_HELP, 0, reinterpret_cast<LPARAM>(&help), SMTO_NORMAL, kPatience,
                             &result) != 0 &&
         result == 0;
}

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
