#include "app/help.h"

#include <windows.h>

#include <filesystem>
#include <string>

#include "base/handles.h"

namespace {

std::filesystem::path programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return std::filesystem::path(path).parent_path();
}

}  // namespace

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
