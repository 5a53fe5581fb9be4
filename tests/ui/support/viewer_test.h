#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "owners/handles.h"
#include "tests/ui/support/ui_test.h"

/// The program in a folder of its own, with or without a viewer beside it.
class ViewerTest : public UiTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(registerBinComponents());
    std::filesystem::copy_file(programFile(), file("program.exe"));
    for (const wchar_t* module : {L"aygshell.dll", L"adoce31.dll"}) {
      std::filesystem::copy_file(testsupport::binFolder() / module,
                                 file("program.exe").parent_path() / module);
    }
  }
  void TearDown() override {
    SetEvent(release_.get());
    EXPECT_TRUE(registerBinComponents());
  }

  void installViewer() {
    std::filesystem::copy_file(testsupport::binFolder().parent_path() / "tests" / "fake_viewer.exe",
                               viewer());
  }
  std::filesystem::path viewer() const { return file("peghelp.exe"); }
  std::filesystem::path note() const { return viewer().wstring() + L".txt"; }

  /// The command line that the viewer was started with, once it has written it.
  std::wstring commandLineOfViewer() const {
    remote::waitUntil(
        [this] { return std::filesystem::exists(note()) && std::filesystem::file_size(note()) != 0; });
    std::ifstream stream(note(), std::ios::binary);
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
  /// After this the viewer can be started again.
  void forgetViewer() const {
    releaseViewer();
    ResetEvent(release_.get());
    std::filesystem::remove(note());
  }

 private:
  UniqueKernelObject release_{CreateEventW(nullptr, TRUE, FALSE, L"Local\\Quivane.Test.ReleaseViewer")};
};
