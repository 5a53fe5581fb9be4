#include "data/handles/file_bytes.h"

#include <windows.h>

#include <utility>

#include "owners/handles.h"

namespace {

Outcome systemFailure() {
  wchar_t text[512] = L"";
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  FormatMessageW(kFlags, nullptr, GetLastError(), 0, text, ARRAYSIZE(text), nullptr);
  return Outcome::failure(text);
}

}  // namespace

Outcome readFile(const String& path, Bytes& bytes) {
  const UniqueFile file(CreateFileW(path.text(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER length{};
  if (!file || !GetFileSizeEx(file.get(), &length)) return systemFailure();
  if (static_cast<std::uint64_t>(length.QuadPart) > kMostFileBytes) {
    return Outcome::failure(L"It has more than 100,000,000 bytes.");
  }
  Bytes found(static_cast<std::size_t>(length.QuadPart));
  DWORD count = 0;
  if (!ReadFile(file.get(), found.data(), static_cast<DWORD>(found.size()), &count, nullptr)) {
    return systemFailure();
  }
  if (count != found.size()) return Outcome::failure(L"Another program has cut it meanwhile.");
  bytes = std::move(found);
  return {};
}
