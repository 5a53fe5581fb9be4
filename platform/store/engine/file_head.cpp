#include "platform/store/engine/file_head.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <system_error>

namespace store {

namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::size_t kHeadBytes = 100;
constexpr std::size_t kPageSizeOffset = 16;
constexpr std::size_t kReadVersionOffset = 19;
constexpr unsigned char kWriteAheadVersion = 2;

using HeadBytes = std::array<unsigned char, kHeadBytes>;

std::size_t readHead(const std::string& path, HeadBytes* bytes) {
  std::ifstream file(pathOf(path), std::ios::binary);
  file.read(reinterpret_cast<char*>(bytes->data()), static_cast<std::streamsize>(bytes->size()));
  return static_cast<std::size_t>(file.gcount());
}

Status refusal(std::string reason) {
  return {ErrorCode::cannotOpen, std::move(reason)};
}

}  // namespace

std::filesystem::path pathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

bool isFileName(const std::string& path) {
  return !path.empty() && path != ":memory:" && path.find('\0') == path.npos;
}

Status readFileHead(const std::string& path, FileHead* head) {
  if (!isFileName(path)) return refusal("This is not the name of a file.");
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(pathOf(path), error);
  if (!std::filesystem::exists(status)) return refusal("The file does not exist.");
  if (std::filesystem::is_directory(status)) return refusal("This is a folder, not a database file.");
  if (!std::filesystem::is_regular_file(status)) return refusal("This is not an ordinary file.");
  HeadBytes bytes{};
  const std::size_t length = readHead(path, &bytes);
  if (length == 0) {
    const bool empty = std::filesystem::file_size(pathOf(path), error) == 0 && !error;
    return refusal(empty ? "The file is empty." : "The file can't be read.");
  }
  const std::string_view start(reinterpret_cast<const char*>(bytes.data()), std::min(length, kMagic.size()));
  if (start != kMagic) return refusal("The file is not a database.");
  if (length < kHeadBytes) return refusal("The database is damaged: The file is cut short.");
  head->writeAheadLog = bytes[kReadVersionOffset] == kWriteAheadVersion;
  return {};
}

bool hasWholePages(const std::string& path) {
  HeadBytes bytes{};
  if (readHead(path, &bytes) < kHeadBytes) return true;
  std::uintmax_t pageSize =
      static_cast<std::uintmax_t>(bytes[kPageSizeOffset]) << 8 | bytes[kPageSizeOffset + 1];
  if (pageSize == 1) pageSize = 65536;  // which does not fit into the two bytes
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(pathOf(path), error);
  return error || pageSize == 0 || length % pageSize == 0;
}

bool isMarkedReadOnly(const std::string& path) {
  using std::filesystem::perms;
  std::error_code error;
  const perms permissions = std::filesystem::status(pathOf(path), error).permissions();
  if (error) return false;
  return (permissions & (perms::owner_write | perms::group_write | perms::others_write)) == perms::none;
}

}  // namespace store
