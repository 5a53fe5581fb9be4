#include "platform/store/exchange/bytes/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/store/exchange/bytes/files_in_use.h"
#include "platform/store/rows/utf.h"
#include "platform/store/sqlite/files/file_path.h"

namespace store::exchange {

namespace {

namespace fs = std::filesystem;

// What another run has left is in nobody's way.
constexpr int kMostNames = 1000;
// Of 255 that a name may have on most systems.
constexpr std::size_t kMostNameBytes = 200;

Status failedToWrite(const std::string& path, const std::string& reason) {
  return {ErrorCode::inputOutput, "The file " + path + " can't be written: " + reason + "."};
}

std::string utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string partName(const fs::path& place, int number) {
  const std::string name = utf8Of(place.filename());
  std::string part =
      std::string(beginningOf(name, kMostNameBytes)) + ".part" + std::to_string(processNumber());
  if (number > 0) part += "-" + std::to_string(number);
  return utf8Of(place.parent_path() / pathOf(part));
}

}  // namespace

OutputFile::~OutputFile() {
  remove();
}

void OutputFile::remove() {
  file_.reset();
  if (writtenPath_.empty()) return;
  std::error_code error;
  fs::remove(pathOf(writtenPath_), error);
  writtenPath_.clear();
}

/// Whether a file may be put there now; finds out where that is.
Status OutputFile::checkPlace() {
  std::error_code error;
  fs::path place = pathOf(path_);
  const fs::file_type own = fs::symlink_status(place, error).type();
  const fs::file_type type = fs::status(place, error).type();
  if (own == fs::file_type::none || type == fs::file_type::none) {
    return {ErrorCode::cannotOpen,
            "It can't be told whether there is a file " + path_ + ": " + error.message() + "."};
  }
  if (own != fs::file_type::not_found && !replaces_) {
    return {ErrorCode::fileExists, "The file " + path_ + " exists already."};
  }
  if (own != fs::file_type::not_found && type != fs::file_type::regular) {
    return {ErrorCode::cannotOpen, path_ + " is not a file that can be replaced."};
  }
  if (own == fs::file_type::symlink) place = fs::canonical(place, error);
  if (error && own == fs::file_type::symlink) return failedToWrite(path_, error.message());
  place_ = utf8Of(place);
  return checkNotInUse(place_, inUse_);
}

Status OutputFile::create(const std::string& path, bool replaces, const std::vector<std::string>& inUse) {
  path_ = path;
  replaces_ = replaces;
  inUse_ = inUse;
  if (Status status = checkPlace(); !status) return status;
  const fs::path place = pathOf(place_);
  for (int number = 0; number < kMostNames && file_ == nullptr; ++number) {
    const std::string name = partName(place, number);
    errno = 0;
    file_ = createToWrite(name);
    if (file_ != nullptr) writtenPath_ = name;
    if (file_ == nullptr && errno != EEXIST) break;
  }
  if (file_ == nullptr) return failedToWrite(path_, std::strerror(errno));
  std::error_code error;
  const fs::file_status replaced = fs::status(place, error);
  const bool isWritable = (replaced.permissions() & fs::perms::owner_write) != fs::perms::none;
  if (fs::exists(replaced) && isWritable) {
    fs::permissions(pathOf(writtenPath_), replaced.permissions(), error);
  }
  return {};
}

Status OutputFile::write(std::string_view bytes) {
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size()) return {};
  return failedToWrite(path_, std::strerror(errno));
}

Status OutputFile::keep() {
  errno = 0;
  const bool isFlushed = flushToDisk(file_.get());
  const std::string flushProblem = std::strerror(errno);
  // An open file can't be renamed on every system.
  file_.reset();
  Status status = isFlushed ? checkPlace() : failedToWrite(path_, flushProblem);
  if (status) {
    std::string reason;
    switch (putIntoPlace(writtenPath_, place_, replaces_, &reason)) {
      case Placing::done:
        writtenPath_.clear();
        return {};
      case Placing::taken:
        status = {ErrorCode::fileExists, "The file " + path_ + " exists already."};
        break;
      case Placing::failed:
        status = failedToWrite(path_, reason);
    }
  }
  remove();
  return status;
}

}  // namespace store::exchange
