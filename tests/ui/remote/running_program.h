#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>

/// One run of the real program, from the bin folder unless told otherwise. The process is ended with
/// the object if it has not ended by itself.
class RunningProgram {
 public:
  /// `arguments` is the command line behind the program's name. Throws std::runtime_error when the
  /// program can't be started.
  explicit RunningProgram(const std::wstring& arguments);
  RunningProgram(const std::filesystem::path& program, const std::wstring& arguments);
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  DWORD processId() const { return process_.dwProcessId; }
  /// With every right; closed with the object.
  HANDLE processHandle() const { return process_.hProcess; }

  /// The main window once it is shown; null when that takes too long.
  HWND mainWindow() const;
  /// The list of tables once the first name is in it; null when that takes too long.
  HWND tablesList() const;
  /// A message box once one is shown; null when that takes too long.
  HWND messageBox() const;

  /// The exit code once the process has ended; none when that takes too long.
  std::optional<DWORD> exitCode() const;
  bool isRunning() const;

 private:
  /// The system's error.
  DWORD start(std::wstring commandLine);

  PROCESS_INFORMATION process_{};
};

/// A path in double quotes.
std::wstring quoted(const std::filesystem::path& path);

/// The program in the bin folder.
std::filesystem::path programFile();
