#include "app/window/help.h"

#include <windows.h>

#include <filesystem>
#include <string>

#include "base/program_folder.h"
#include "owners/handles.h"

void showHelp(const wchar_t* topic) {
  const std::filesystem::path viewer = programFolder() / L"peghelp.exe";
  // The system writes into the command line.
  std::wstring commandLine = topic;
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(viewer.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &start, &process)) {
    return;
  }
  const UniqueKernelObject processHandle(process.hProcess);
  const UniqueKernelObject threadHandle(process.hThread);
}
