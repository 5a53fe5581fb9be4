#include "app/recovery/fault_report.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kMostCallers = 40;

/// One line of the report, of ASCII characters alone.
class Line {
 public:
  explicit Line(HANDLE file) noexcept : file_(file) {}
  ~Line() {
    add("\r\n");
    DWORD written = 0;
    WriteFile(file_, text_, static_cast<DWORD>(count_), &written, nullptr);
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  Line& add(const char* text) noexcept {
    for (; *text != '\0'; ++text) put(*text);
    return *this;
  }
  Line& add(const wchar_t* text) noexcept {
    for (; *text != L'\0'; ++text) put(*text >= L' ' && *text <= L'~' ? static_cast<char>(*text) : '?');
    return *this;
  }
  Line& addHex(std::uint64_t number, int digits) noexcept {
    constexpr int kBitsOfDigit = 4;
    for (int at = digits - 1; at >= 0; --at) put("0123456789ABCDEF"[number >> (at * kBitsOfDigit) & 0xF]);
    return *this;
  }
  Line& addNumber(unsigned number, int digits) noexcept {
    unsigned place = 1;
    for (int at = 1; at < digits; ++at) place *= 10;
    for (; place > 0; place /= 10) put(static_cast<char>('0' + number / place % 10));
    return *this;
  }

 private:
  void put(char character) noexcept {
    if (count_ < sizeof(text_)) text_[count_++] = character;
  }

  HANDLE file_;
  char text_[400];
  std::size_t count_ = 0;
};

const char* nameOf(DWORD code) noexcept {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
      return "access to an address that is none";
    case EXCEPTION_STACK_OVERFLOW:
      return "the stack is full";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return "no instruction";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return "division by zero";
    case EXCEPTION_IN_PAGE_ERROR:
      return "a page of a file can't be read";
    default:
      return "";
  }
}

/// The module that holds the address, by its name and the address within it.
void addPlace(Line& line, std::uint64_t address) noexcept {
  MEMORY_BASIC_INFORMATION block{};
  const bool isKnown = VirtualQuery(reinterpret_cast<const void*>(address), &block, sizeof(block)) != 0 &&
                       block.Type == MEM_IMAGE;
  wchar_t path[MAX_PATH] = L"";
  if (!isKnown ||
      GetModuleFileNameW(static_cast<HMODULE>(block.AllocationBase), path, ARRAYSIZE(path)) == 0) {
    line.add("no module ").addHex(address, 16);
    return;
  }
  path[ARRAYSIZE(path) - 1] = L'\0';
  // The folders may bear the user's name.
  const wchar_t* name = path;
  for (const wchar_t* at = path; *at != L'\0'; ++at) {
    if (*at == L'\\' || *at == L'/') name = at + 1;
  }
  line.add(name).add(" + ").addHex(address - reinterpret_cast<std::uint64_t>(block.AllocationBase), 8);
}

/// False where the stack is no memory any more.
bool readStack(std::uint64_t address, DWORD64* value) noexcept {
  SIZE_T read = 0;
  return ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(address), value, sizeof(*value),
                           &read) != FALSE &&
         read == sizeof(*value);
}

/// Goes from a function to where it was called. False at the end.
bool goToCaller(CONTEXT* context) noexcept {
  DWORD64 module = 0;
  const PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context->Rip, &module, nullptr);
  if (function != nullptr) {
    void* handler = nullptr;
    DWORD64 frame = 0;
    constexpr DWORD kNoHandlers = 0;
    RtlVirtualUnwind(kNoHandlers, module, context->Rip, function, context, &handler, &frame, nullptr);
  } else {
    // A function that keeps nothing on the stack, or none at all: where to return to lies on top.
    if (!readStack(context->Rsp, &context->Rip)) return false;
    context->Rsp += sizeof(context->Rip);
  }
  return context->Rip != 0;
}

void writeTime(HANDLE file) noexcept {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  Line line(file);
  line.add("Time: ")
      .addNumber(now.wYear, 4)
      .add("-")
      .addNumber(now.wMonth, 2)
      .add("-")
      .addNumber(now.wDay, 2);
  line.add(" ").addNumber(now.wHour, 2).add(":").addNumber(now.wMinute, 2).add(" UTC");
}

}  // namespace

void writeFaultReport(HANDLE file, const EXCEPTION_RECORD& fault, const CONTEXT& context) noexcept {
  Line(file).add("Quivane was ended by a fault.");
  writeTime(file);
  {
    Line line(file);
    line.add("Fault: ").addHex(fault.ExceptionCode, 8).add(" ").add(nameOf(fault.ExceptionCode));
    if (fault.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && fault.NumberParameters >= 2) {
      line.add(fault.ExceptionInformation[0] == 0 ? ", read at " : ", written or run at ");
      line.addHex(fault.ExceptionInformation[1], 16);
    }
  }
  {
    Line line(file);
    addPlace(line.add("At: "), context.Rip);
  }
  CONTEXT caller = context;
  for (std::size_t depth = 0; depth < kMostCallers && goToCaller(&caller); ++depth) {
    Line line(file);
    addPlace(line.add("Called from: "), caller.Rip);
  }
}
