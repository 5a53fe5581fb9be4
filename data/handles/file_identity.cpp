#include "data/handles/file_identity.h"

#include <windows.h>

#include <optional>

#include "owners/handles.h"

namespace {

/// What tells the file from every other; none for one that can't be looked at.
std::optional<BY_HANDLE_FILE_INFORMATION> identity(const String& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD kNoAccess = 0;
  const UniqueFile file(
      CreateFileW(path.text(), kNoAccess, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  BY_HANDLE_FILE_INFORMATION found{};
  if (!file || !GetFileInformationByHandle(file.get(), &found)) return std::nullopt;
  return found;
}

}  // namespace

bool isSameFile(const String& one, const String& other) {
  if (CompareStringOrdinal(one.text(), -1, other.text(), -1, TRUE) == CSTR_EQUAL) return true;
  const auto first = identity(one);
  const auto second = identity(other);
  return first && second && first->dwVolumeSerialNumber == second->dwVolumeSerialNumber &&
         first->nFileIndexHigh == second->nFileIndexHigh && first->nFileIndexLow == second->nFileIndexLow;
}
