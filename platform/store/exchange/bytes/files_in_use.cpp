#include "platform/store/exchange/bytes/files_in_use.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sqlite/files/file_path.h"

namespace store::exchange {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSuffixes[] = {"", "-journal", "-wal", "-shm"};

std::string nameOf(const fs::path& path) {
  const std::u8string name = path.filename().u8string();
  return {name.begin(), name.end()};
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// Whether both stand, or would stand, at one place; empty when the system doesn't tell.
std::optional<bool> isSamePlace(const fs::path& left, const fs::path& right) {
  std::error_code error;
  const fs::file_type types[] = {fs::status(left, error).type(), fs::status(right, error).type()};
  if (types[0] == fs::file_type::none || types[1] == fs::file_type::none) return std::nullopt;
  const bool exist[] = {types[0] != fs::file_type::not_found, types[1] != fs::file_type::not_found};
  if (exist[0] != exist[1]) return false;
  if (!exist[0] && !equalsIgnoringCase(nameOf(left), nameOf(right))) return false;
  const bool isSame =
      exist[0] ? fs::equivalent(left, right, error) : fs::equivalent(folderOf(left), folderOf(right), error);
  if (!error) return isSame;
  // Where there is no folder there is no file either.
  const bool hasFolders = exist[0] || (fs::exists(folderOf(left)) && fs::exists(folderOf(right)));
  return hasFolders ? std::nullopt : std::optional(false);
}

/// The file itself where `path` is a link to it: SQLite keeps its own ones beside that.
fs::path realPathOf(const fs::path& path) {
  std::error_code error;
  fs::path real = fs::canonical(path, error);
  return error ? path : real;
}

}  // namespace

Status checkNotInUse(const std::string& path, const std::vector<std::string>& inUse) {
  const fs::path place = pathOf(path);
  for (const std::string& other : inUse) {
    for (const fs::path& used : {pathOf(other), realPathOf(pathOf(other))}) {
      for (const char* suffix : kSuffixes) {
        fs::path companion = used;
        companion += suffix;
        const std::optional<bool> isSame = isSamePlace(place, companion);
        if (!isSame) {
          return {ErrorCode::cannotOpen,
                  "It can't be told whether the file " + path + " is in use, so it is not written."};
        }
        if (*isSame) return {ErrorCode::fileExists, "The file " + path + " is in use and is not replaced."};
      }
    }
  }
  return {};
}

}  // namespace store::exchange
