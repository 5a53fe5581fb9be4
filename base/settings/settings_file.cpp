#include "base/settings/settings_file.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "owners/handles.h"

namespace {

constexpr wchar_t kByteOrderMark = L'\xFEFF';
/// Far more than the program ever stores, and enough for one that has been given a value of a megabyte.
constexpr LONGLONG kLargestByteCount = 16 * 1024 * 1024;

/// In milliseconds. Programs that look at every new file, or copy it elsewhere, keep it only for a moment.
constexpr ULONGLONG kMostWaiting = 500;
constexpr DWORD kPause = 10;
/// A start reads dozens of values, which may not all wait.
constexpr ULONGLONG kNextWaiting = 5000;

/// What a file holds. `text` is empty for one that is not there, and for one that is too large to be ours.
struct Content {
  bool isReadable = false;
  bool isInUse = false;  // by another program; perhaps it is readable soon
  bool isTooLarge = false;
  std::wstring text = {};
};

Content contentOf(const std::filesystem::path& path) {
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    const DWORD error = GetLastError();
    return {.isReadable = error == ERROR_FILE_NOT_FOUND, .isInUse = error == ERROR_SHARING_VIOLATION};
  }
  LARGE_INTEGER length{};
  if (!GetFileSizeEx(file.get(), &length)) return {};
  if (length.QuadPart > kLargestByteCount) return {.isReadable = true, .isTooLarge = true};
  Content content{.isReadable = true};
  content.text.resize(static_cast<std::size_t>(length.QuadPart) / sizeof(wchar_t));
  const auto byteCount = static_cast<DWORD>(content.text.size() * sizeof(wchar_t));
  DWORD read = 0;
  if (!ReadFile(file.get(), content.text.data(), byteCount, &read, nullptr)) {
    return {.isInUse = GetLastError() == ERROR_LOCK_VIOLATION};
  }
  if (read != byteCount) return {};
  if (content.text.starts_with(kByteOrderMark)) content.text.erase(0, 1);
  return content;
}

Content waitForContent(const std::filesystem::path& path, std::uint64_t& waitedInVainAt) {
  const ULONGLONG begin = GetTickCount64();
  const bool mayWait = waitedInVainAt == 0 || begin - waitedInVainAt >= kNextWaiting;
  for (;;) {
    Content content = contentOf(path);
    if (!content.isInUse || !mayWait) return content;
    const ULONGLONG now = GetTickCount64();
    if (now - begin >= kMostWaiting) {
      waitedInVainAt = now;
      return content;
    }
    Sleep(kPause);
  }
}

bool writeNew(const std::filesystem::path& path, const std::wstring& text) {
  const std::wstring all = kByteOrderMark + text;
  const UniqueFile file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  const auto byteCount = static_cast<DWORD>(all.size() * sizeof(wchar_t));
  DWORD written = 0;
  return WriteFile(file.get(), all.data(), byteCount, &written, nullptr) && written == byteCount &&
         FlushFileBuffers(file.get());
}

std::filesystem::path withSuffix(const std::filesystem::path& path, const wchar_t* suffix) {
  return path.wstring() + suffix;
}

bool moveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

/// `damaged` takes what stands there now out of the way before.
bool replaceBy(const std::filesystem::path& path, const std::wstring& text, bool damaged) {
  const std::filesystem::path fresh = withSuffix(path, L".new");
  if (writeNew(fresh, text) && (!damaged || moveOver(path, withSuffix(path, L".damaged"))) &&
      moveOver(fresh, path)) {
    return true;
  }
  DeleteFileW(fresh.c_str());
  return false;
}

}  // namespace

SettingsFile::Found SettingsFile::read(const wchar_t* key, const wchar_t* name,
                                       settings::Value& value) const noexcept try {
  const Content content = waitForContent(path_, waitedInVainAt_);
  if (!content.isReadable) return Found::unreadable;
  const std::optional<settings::Keys> keys = settings::keysOf(content.text);
  if (!keys) return Found::noKey;
  const auto values = keys->find(key);
  if (values == keys->end()) return Found::noKey;
  const auto found = values->second.find(name);
  if (found == values->second.end()) return Found::noValue;
  value = found->second;
  return Found::value;
} catch (const std::exception&) {
  return Found::unreadable;
}

bool SettingsFile::write(const wchar_t* key, const wchar_t* name, DWORD type, const void* bytes,
                         std::size_t byteCount) const noexcept try {
  const Content content = waitForContent(path_, waitedInVainAt_);
  if (!content.isReadable) return false;
  std::optional<settings::Keys> keys = settings::keysOf(content.text);
  const bool damaged = content.isTooLarge || (!keys && !content.text.empty());
  if (!keys) keys.emplace();
  const auto* const first = static_cast<const BYTE*>(bytes);
  settings::Value& stored = (*keys)[key][name];
  settings::Value value{type, std::vector<BYTE>(first, first + byteCount)};
  if (stored == value) return true;
  stored = std::move(value);
  return replaceBy(path_, settings::textOf(*keys), damaged);
} catch (const std::exception&) {
  return false;
}
