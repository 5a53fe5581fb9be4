#include "platform/store/exchange/bytes/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/store/sqlite/files/file_path.h"

namespace store::exchange {

namespace {

Status failedToWrite(const std::string& path) {
  return {ErrorCode::inputOutput, "The file " + path + " can't be written: " + std::strerror(errno) + "."};
}

}  // namespace

OutputFile::~OutputFile() {
  if (file_ == nullptr) return;
  file_.reset();
  std::error_code error;
  std::filesystem::remove(pathOf(writtenPath_), error);
}

Status OutputFile::create(const std::string& path, bool replaces, const std::vector<std::string>& inUse) {
  std::error_code error;
  const std::filesystem::path place = pathOf(path);
  const bool exists = std::filesystem::exists(place, error);
  if (exists && !replaces) {
    return {ErrorCode::fileExists, "The file " + path + " exists already."};
  }
  if (exists && !std::filesystem::is_regular_file(place, error)) {
    return {ErrorCode::cannotOpen, path + " is not a file that can be replaced."};
  }
  for (const std::string& other : inUse) {
    if (exists && std::filesystem::equivalent(place, pathOf(other), error)) {
      return {ErrorCode::fileExists, "The file " + path + " is in use and is not replaced."};
    }
  }
  path_ = path;
  writtenPath_ = exists ? path + ".part" + std::to_string(processNumber()) : path;
  errno = 0;
  file_ = createToWrite(writtenPath_);
  return file_ != nullptr ? Status() : failedToWrite(path);
}

Status OutputFile::write(std::string_view bytes) {
  errno = 0;
  return std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size() ? Status()
                                                                                 : failedToWrite(path_);
}

Status OutputFile::keep() {
  errno = 0;
  if (!flushToDisk(file_.get())) return failedToWrite(path_);
  if (writtenPath_ != path_) {
    // An open file can't be renamed on every system.
    file_.reset();
    std::error_code error;
    std::filesystem::rename(pathOf(writtenPath_), pathOf(path_), error);
    if (error) {
      std::error_code ignored;
      std::filesystem::remove(pathOf(writtenPath_), ignored);
      return {ErrorCode::inputOutput, "The file " + path_ + " can't be replaced: " + error.message() + "."};
    }
  }
  file_.reset();
  return {};
}

}  // namespace store::exchange
