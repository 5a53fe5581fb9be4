#include "tests/automation/support/second_process.h"

#include <array>

#include "gtest/gtest.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/support/process.h"

namespace automationtest {

namespace {

constexpr wchar_t kPathVariable[] = L"QUIVANE_TEST_LOCKED_FILE";
constexpr wchar_t kEventVariable[] = L"QUIVANE_TEST_LOCK_EVENTS";
constexpr DWORD kLongest = 60'000;  // milliseconds, for a process that hangs

std::wstring variable(const wchar_t* name) {
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::wstring heldName(const std::wstring& base) {
  return base + L"-held";
}
std::wstring releaseName(const std::wstring& base) {
  return base + L"-release";
}

/// The part of the second process. It runs only when LockHolder asks for it by name.
TEST(SecondProcess, DISABLED_HoldsTheLock) {
  const std::wstring events = variable(kEventVariable);
  const HANDLE held = OpenEventW(EVENT_MODIFY_STATE, FALSE, heldName(events).c_str());
  const HANDLE release = OpenEventW(SYNCHRONIZE, FALSE, releaseName(events).c_str());
  ASSERT_NE(held, nullptr);
  ASSERT_NE(release, nullptr);
  SqliteFile file(variable(kPathVariable));
  file.run("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE");
  if (HasFailure()) return;
  ASSERT_TRUE(SetEvent(held));
  EXPECT_EQ(WaitForSingleObject(release, kLongest), WAIT_OBJECT_0);
  file.run("ROLLBACK");
  CloseHandle(held);
  CloseHandle(release);
}

}  // namespace

bool isLockHolder() {
  return !variable(kEventVariable).empty();
}

LockHolder::LockHolder(const std::wstring& path) {
  static int number = 0;
  const std::wstring events = L"quivane-test-lock-" + std::to_wstring(testsupport::processNumber()) + L"-" +
                              std::to_wstring(++number);
  held_ = CreateEventW(nullptr, TRUE, FALSE, heldName(events).c_str());
  release_ = CreateEventW(nullptr, TRUE, FALSE, releaseName(events).c_str());
  SetEnvironmentVariableW(kPathVariable, path.c_str());
  SetEnvironmentVariableW(kEventVariable, events.c_str());

  std::wstring commandLine =
      L"\"" + testsupport::programPath().wstring() +
      L"\" --gtest_filter=SecondProcess.* --gtest_also_run_disabled_tests --gtest_brief=1";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &startup, &process);
  SetEnvironmentVariableW(kPathVariable, nullptr);
  SetEnvironmentVariableW(kEventVariable, nullptr);
  if (!started) return;
  CloseHandle(process.hThread);
  process_ = process.hProcess;
  const std::array<HANDLE, 2> signs = {held_, process_};
  holds_ = WaitForMultipleObjects(2, signs.data(), FALSE, kLongest) == WAIT_OBJECT_0;
}

LockHolder::~LockHolder() {
  SetEvent(release_);
  if (process_ != nullptr) {
    EXPECT_EQ(WaitForSingleObject(process_, kLongest), WAIT_OBJECT_0);
    DWORD exitCode = 17;
    EXPECT_TRUE(GetExitCodeProcess(process_, &exitCode));
    EXPECT_EQ(exitCode, 0u);
    CloseHandle(process_);
  }
  CloseHandle(held_);
  CloseHandle(release_);
}

std::string outputOf(std::wstring commandLine, const std::wstring& folder, DWORD* exitCode) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  EXPECT_TRUE(CreatePipe(&readEnd, &writeEnd, &inherited, 0));
  EXPECT_TRUE(SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0));
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = writeEnd;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process = {};
  const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                      folder.c_str(), &startup, &process);
  EXPECT_TRUE(started) << GetLastError();
  CloseHandle(writeEnd);
  std::string output;
  std::array<char, 4096> buffer{};
  DWORD length = 0;
  while (started && ReadFile(readEnd, buffer.data(), buffer.size(), &length, nullptr) && length > 0) {
    output.append(buffer.data(), length);
  }
  CloseHandle(readEnd);
  if (started) {
    EXPECT_EQ(WaitForSingleObject(process.hProcess, kLongest), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeProcess(process.hProcess, exitCode));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  return output;
}

}  // namespace automationtest
