#include "platform/store/sqlite/files/file_head.h"

#include <algorithm>
#include <array>
#include <sqlite3.h>
#include <string_view>
#include <system_error>

namespace store {

namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr int kHeadBytes = 100;
constexpr std::size_t kPageSizeOffset = 16;
constexpr std::size_t kReadVersionOffset = 19;
constexpr std::size_t kChangesOffset = 24;
constexpr std::size_t kPageCountOffset = 28;
constexpr std::size_t kCountValidForOffset = 92;
constexpr unsigned char kWriteAheadVersion = 2;

struct Head {
  std::array<unsigned char, kHeadBytes> bytes{};
  sqlite3_int64 fileLength = 0;

  sqlite3_int64 number(std::size_t offset, std::size_t length) const {
    sqlite3_int64 value = 0;
    for (std::size_t index = 0; index < length; ++index) value = value << 8 | bytes[offset + index];
    return value;
  }
  bool isOfDatabase() const {
    return std::string_view(reinterpret_cast<const char*>(bytes.data()), kMagic.size()) == kMagic;
  }
  /// How long all pages together are; 0 when the head does not say.
  sqlite3_int64 wholeLength() const {
    // The number of pages counts only if who wrote it was the last to write.
    if (number(kChangesOffset, 4) != number(kCountValidForOffset, 4)) return 0;
    const sqlite3_int64 pageSize = number(kPageSizeOffset, 2);
    // The largest does not fit into the two bytes.
    return (pageSize == 1 ? 65536 : pageSize) * number(kPageCountOffset, 4);
  }
};

bool readHead(sqlite3* connection, Head* head) {
  sqlite3_file* file = nullptr;
  const int result = sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (result != SQLITE_OK || file == nullptr || file->pMethods == nullptr) return false;
  if (file->pMethods->xFileSize(file, &head->fileLength) != SQLITE_OK) return false;
  // Bytes that a short file lacks are zero.
  const int read = file->pMethods->xRead(file, head->bytes.data(), kHeadBytes, 0);
  return read == SQLITE_OK || read == SQLITE_IOERR_SHORT_READ;
}

bool hasLog(sqlite3* connection) {
  sqlite3_file* log = nullptr;
  const int result = sqlite3_file_control(connection, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
  if (result != SQLITE_OK || log == nullptr || log->pMethods == nullptr) return false;
  sqlite3_int64 length = 0;
  return log->pMethods->xFileSize(log, &length) == SQLITE_OK && length > 0;
}

Status refusal(std::string reason) {
  return {ErrorCode::cannotOpen, std::move(reason)};
}

}  // namespace

std::filesystem::path pathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

bool isFileName(const std::string& path) {
  return !path.empty() && path != ":memory:" && path.find('\0') == std::string::npos;
}

Status checkOrdinaryFile(const std::string& path) {
  if (!isFileName(path)) return refusal("This is not the name of a file.");
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(pathOf(path), error);
  if (!std::filesystem::exists(status)) return refusal("The file does not exist.");
  if (std::filesystem::is_directory(status)) return refusal("This is a folder, not a database file.");
  if (!std::filesystem::is_regular_file(status)) return refusal("This is not an ordinary file.");
  return {};
}

Status checkFileHead(sqlite3* connection) {
  Head head;
  if (!readHead(connection, &head)) return refusal("The file can't be read.");
  if (head.fileLength == 0) return refusal("The file is empty.");
  if (!head.isOfDatabase()) return refusal("The file is not a database.");
  if (head.fileLength < kHeadBytes) return refusal("The database is damaged: The file is cut short.");
  return {};
}

bool endsWithinPage(sqlite3* connection) {
  Head head;
  if (!readHead(connection, &head) || head.fileLength < kHeadBytes) return false;
  if (head.bytes[kReadVersionOffset] == kWriteAheadVersion && hasLog(connection)) return false;
  return head.fileLength < head.wholeLength();
}

std::int64_t missingBytes(std::string_view start, std::int64_t length) {
  Head head;
  if (start.size() < head.bytes.size()) return 0;
  std::copy_n(start.begin(), head.bytes.size(), head.bytes.begin());
  return head.isOfDatabase() ? std::max<std::int64_t>(head.wholeLength() - length, 0) : 0;
}

bool isMarkedReadOnly(const std::string& path) {
  using std::filesystem::perms;
  std::error_code error;
  const perms permissions = std::filesystem::status(pathOf(path), error).permissions();
  if (error) return false;
  return (permissions & (perms::owner_write | perms::group_write | perms::others_write)) == perms::none;
}

}  // namespace store
