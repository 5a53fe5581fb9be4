#include "app/recovery/fault_watch.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cwchar>
#include <utility>

#include "app/recovery/fault_report.h"

namespace {

/// What the compiler's exceptions are to the system. Those that nobody catches end in abort().
constexpr DWORD kCppException = 0x20474343;
constexpr DWORD kCppExceptionBits = 0x20FFFFFF;
/// What an abort() is called in the report.
constexpr DWORD kAborted = 0xE0000001;
/// For another thread to write what there is to write.
constexpr DWORD kPatience = 10'000;
/// Enough for the report when the stack is full.
constexpr ULONG kStackLeft = 64 * 1024;

using Path = wchar_t[MAX_PATH];
Path typedPath = L"";
Path faultPath = L"";

/// The one that is not in use is changed, so that a fault on another thread finds a whole one.
std::array<std::wstring, 2> keptTexts;
std::atomic<unsigned> presentText{0};

std::atomic<DWORD> faultingThread{0};
LPTOP_LEVEL_EXCEPTION_FILTER formerFilter = nullptr;
void (*formerAbort)(int) = nullptr;

void copyPath(const std::filesystem::path& from, Path& to) noexcept {
  const std::wstring& path = from.native();
  to[0] = L'\0';
  if (path.size() < ARRAYSIZE(to)) std::wmemcpy(to, path.c_str(), path.size() + 1);
}

class FileForWriting {
 public:
  FileForWriting(const Path& path, DWORD disposition) noexcept
      : file_(path[0] == L'\0' ? INVALID_HANDLE_VALUE
                               : CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition,
                                             FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~FileForWriting() {
    if (!isOpen()) return;
    FlushFileBuffers(file_);
    CloseHandle(file_);
  }
  FileForWriting(const FileForWriting&) = delete;
  FileForWriting& operator=(const FileForWriting&) = delete;

  bool isOpen() const noexcept { return file_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const noexcept { return file_; }

 private:
  HANDLE file_;
};

/// Behind what an earlier end has left there and nobody has looked at yet.
void writeTyped() noexcept {
  const std::wstring& text = keptTexts[presentText];
  if (text.empty()) return;
  const FileForWriting file(typedPath, OPEN_ALWAYS);
  if (!file.isOpen()) return;
  LARGE_INTEGER end{};
  SetFilePointerEx(file.get(), {}, &end, FILE_END);
  constexpr wchar_t kByteOrderMark[] = L"\xFEFF";
  constexpr wchar_t kBetween[] = L"\r\n";
  DWORD written = 0;
  WriteFile(file.get(), end.QuadPart == 0 ? kByteOrderMark : kBetween,
            static_cast<DWORD>((end.QuadPart == 0 ? 1 : 2) * sizeof(wchar_t)), &written, nullptr);
  WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &written, nullptr);
}

struct Fault {
  const EXCEPTION_RECORD& what;
  const CONTEXT& where;
};

DWORD WINAPI writeReport(void* parameter) noexcept {
  const Fault& fault = *static_cast<const Fault*>(parameter);
  const FileForWriting report(faultPath, CREATE_ALWAYS);
  if (report.isOpen()) writeFaultReport(report.get(), fault.what, fault.where);
  return 0;
}

/// First what can't be had again. A fault in here is none of the program's and ends it.
void leaveTraces(Fault fault) noexcept {
  DWORD thread = 0;
  if (!faultingThread.compare_exchange_strong(thread, GetCurrentThreadId())) {
    if (thread != GetCurrentThreadId()) Sleep(kPatience);
    return;
  }
  writeTyped();
  // What is left of a full stack is too little for the report on some systems.
  const HANDLE other = fault.what.ExceptionCode == EXCEPTION_STACK_OVERFLOW
                           ? CreateThread(nullptr, 0, writeReport, &fault, 0, nullptr)
                           : nullptr;
  if (other != nullptr) {
    WaitForSingleObject(other, kPatience);
  } else {
    writeReport(&fault);
  }
}

LONG WINAPI faultHappened(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& fault = *exception->ExceptionRecord;
  if ((fault.ExceptionCode & kCppExceptionBits) != kCppException)
    leaveTraces({fault, *exception->ContextRecord});
  return formerFilter != nullptr ? formerFilter(exception) : EXCEPTION_CONTINUE_SEARCH;
}

/// That the calling thread has kStackLeft when its stack is full.
///
/// Wine takes note of the wish and leaves the guard where it is, at the very end: with what is left there
/// Wine 8 just comes as far as the handler, and Wine 10 does not. But Wine commits the whole stack, so that
/// the guard can be set where the room has to begin, and from then on the wish is fulfilled. Where a stack is
/// committed as it grows nothing is committed there yet, and the system itself heeds the wish.
void keepStackLeft() noexcept {
  ULONG left = kStackLeft;
  if (SetThreadStackGuarantee(&left) == FALSE) return;
  MEMORY_BASIC_INFORMATION memory{};
  if (VirtualQuery(&memory, &memory, sizeof(memory)) == 0) return;
  char* const guard = static_cast<char*>(memory.AllocationBase) + kStackLeft;
  if (VirtualQuery(guard, &memory, sizeof(memory)) == 0) return;
  if (memory.State != MEM_COMMIT || memory.Protect != PAGE_READWRITE) return;
  DWORD former = 0;
  VirtualProtect(guard, 1, PAGE_READWRITE | PAGE_GUARD, &former);
}

/// Returns into abort(), which ends the program.
void aborted(int) {
  EXCEPTION_RECORD fault{};
  fault.ExceptionCode = kAborted;
  CONTEXT context{};
  RtlCaptureContext(&context);
  leaveTraces({fault, context});
}

}  // namespace

FaultWatch::FaultWatch(const RecoveryFiles& files) noexcept {
  copyPath(files.typed, typedPath);
  copyPath(files.fault, faultPath);
  faultingThread = 0;
  keepStackLeft();
  formerFilter = SetUnhandledExceptionFilter(faultHappened);
  formerAbort = std::signal(SIGABRT, aborted);
}

FaultWatch::~FaultWatch() {
  std::signal(SIGABRT, formerAbort);
  SetUnhandledExceptionFilter(formerFilter);
  keepTyped({});
  typedPath[0] = L'\0';
}

void FaultWatch::keepTyped(std::wstring text) noexcept {
  const unsigned next = 1 - presentText;
  keptTexts[next].swap(text);
  presentText = next;
}

const wchar_t* FaultWatch::typedFile() noexcept {
  return typedPath;
}
