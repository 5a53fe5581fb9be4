#include <windows.h>

#include <shellapi.h>

#include <atomic>
#include <fcntl.h>
#include <io.h>

#include "platform/store/cdbtool/system.h"
#include "platform/store/rows/secret_text.h"
#include "platform/store/rows/utf.h"

namespace cdbtool {

namespace {

std::atomic<bool> interrupted{false};

BOOL WINAPI onInterrupt(DWORD /*event*/) {
  // The second one is left to the system, which ends the program.
  return interrupted.exchange(true) ? FALSE : TRUE;
}

}  // namespace

std::vector<std::string> argumentsOf(int /*argc*/, char** /*argv*/) {
  std::vector<std::string> texts;
  int count = 0;
  wchar_t** units = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int index = 1; units != nullptr && index < count; ++index) {
    const std::wstring text = units[index];
    texts.push_back(store::toUtf8({reinterpret_cast<const char16_t*>(text.data()), text.size()}));
  }
  LocalFree(units);
  return texts;
}

void prepareStreams() {
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  if (isTerminal(stdout) || isTerminal(stderr)) SetConsoleOutputCP(CP_UTF8);
}

bool isTerminal(std::FILE* stream) {
  DWORD mode = 0;
  return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode) != 0;
}

std::optional<std::string> askSecret(const std::string& question) {
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdin)));
  DWORD before = 0;
  if (GetConsoleMode(console, &before) == 0) return std::nullopt;
  if (SetConsoleMode(console, ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT) == 0) return std::nullopt;
  std::fputs(question.c_str(), stderr);
  std::fflush(stderr);
  std::wstring line(1024, L'\0');
  DWORD count = 0;
  const bool isRead =
      ReadConsoleW(console, line.data(), static_cast<DWORD>(line.size()), &count, nullptr) != 0;
  SetConsoleMode(console, before);
  std::fputs("\n", stderr);
  const std::size_t end = line.find_first_of(L"\r\n");
  if (!isRead || end >= count) return std::nullopt;
  std::string answer = store::toUtf8({reinterpret_cast<const char16_t*>(line.data()), end});
  store::wipe(&line);
  return answer;
}

void noteInterrupts() {
  SetConsoleCtrlHandler(onInterrupt, TRUE);
}

bool wasInterrupted() {
  return interrupted;
}

char16_t foldedUnit(char16_t unit) {
  // For a single character the function takes it in the place of the pointer.
  const auto argument = reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(unit));
  return static_cast<char16_t>(reinterpret_cast<ULONG_PTR>(CharUpperW(argument)));
}

}  // namespace cdbtool
