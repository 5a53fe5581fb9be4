#include "tests/ui/remote/running_program.h"

#include <stdexcept>

#include "tests/support/paths.h"
#include "tests/ui/remote/remote_window.h"

RunningProgram::RunningProgram(const std::wstring& arguments) : RunningProgram(programFile(), arguments) {}

RunningProgram::RunningProgram(const std::filesystem::path& program, const std::wstring& arguments) {
  const std::wstring commandLine = quoted(program) + L" " + arguments;
  // Wine ends a process now and then before it begins, with this error: the program has no part in that.
  DWORD error = ERROR_INTERNAL_ERROR;
  for (int tries = 0; tries < 3 && error == ERROR_INTERNAL_ERROR; ++tries) error = start(commandLine);
  if (error != ERROR_SUCCESS) {
    throw std::runtime_error("can't start " + program.string() + ", error " + std::to_string(error));
  }
}

DWORD RunningProgram::start(std::wstring commandLine) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &startup, &process_);
  return started ? ERROR_SUCCESS : GetLastError();
}

RunningProgram::~RunningProgram() {
  if (isRunning()) {
    TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, INFINITE);
  }
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

HWND RunningProgram::mainWindow() const {
  HWND window = nullptr;
  remote::waitUntil([&] { return (window = remote::mainWindow(processId())) != nullptr || !isRunning(); });
  return window;
}

HWND RunningProgram::tablesList() const {
  const HWND main = mainWindow();
  HWND list = nullptr;
  remote::waitUntil([&] {
    const HWND page = remote::shownPage(main);
    if (page != nullptr && remote::isList(page) && remote::itemCount(page) > 0) list = page;
    return list != nullptr || !isRunning();
  });
  return list;
}

HWND RunningProgram::messageBox() const {
  HWND box = nullptr;
  remote::waitUntil([&] { return (box = remote::messageBox(processId())) != nullptr || !isRunning(); });
  return box;
}

std::optional<DWORD> RunningProgram::exitCode() const {
  DWORD code = 0;
  if (WaitForSingleObject(process_.hProcess, static_cast<DWORD>(remote::kPatience.count())) !=
          WAIT_OBJECT_0 ||
      !GetExitCodeProcess(process_.hProcess, &code)) {
    return std::nullopt;
  }
  return code;
}

bool RunningProgram::isRunning() const {
  return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

std::wstring quoted(const std::filesystem::path& path) {
  return L"\"" + path.wstring() + L"\"";
}

std::filesystem::path programFile() {
  return testsupport::binFolder() / L"Quivane Pocket PC.exe";
}
