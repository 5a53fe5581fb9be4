#include "platform/store/exchange/bytes/byte_source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace store::exchange {

namespace {

Status failed(const char* what) {
  return {ErrorCode::inputOutput, std::string(what) + ": " + std::strerror(errno) + "."};
}

/// Whether the stream stands on something that has a beginning to go back to.
bool canRewind(std::FILE* file) {
  return std::fseek(file, 0, SEEK_END) == 0 && std::fseek(file, 0, SEEK_SET) == 0;
}

}  // namespace

FileSource::FileSource(FileHandle file) : file_(std::move(file)) {
  if (std::fseek(file_.get(), 0, SEEK_END) == 0) length_ = std::ftell(file_.get());
  std::fseek(file_.get(), 0, SEEK_SET);
  // What is read goes into large buffers of its own.
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
}

Status FileSource::read(char* bytes, std::size_t room, std::size_t* count) {
  const std::size_t got = std::fread(bytes, 1, room, file_.get());
  if (got == 0 && std::ferror(file_.get()) != 0) return failed("The file can't be read");
  *count = got;
  return {};
}

Status FileSource::rewind() {
  std::clearerr(file_.get());
  if (std::fseek(file_.get(), 0, SEEK_SET) != 0) return failed("The file can't be read");
  return {};
}

Status openSource(const std::string& path, std::unique_ptr<ByteSource>* source) {
  errno = 0;
  FileHandle file = openToRead(path);
  if (file == nullptr) {
    const std::string reason = errno != 0 ? std::strerror(errno) : "it is no file";
    return {ErrorCode::cannotOpen, "The file " + path + " can't be opened: " + reason + "."};
  }
  if (!canRewind(file.get())) return copyStream(file.get(), source);
  *source = std::make_unique<FileSource>(std::move(file));
  return {};
}

Status copyStream(std::FILE* stream, std::unique_ptr<ByteSource>* source) {
  FileHandle copy = openTemporary();
  if (copy == nullptr) return failed("There can be no temporary file");
  std::array<char, 1 << 16> block{};
  std::size_t count = 0;
  while ((count = std::fread(block.data(), 1, block.size(), stream)) > 0) {
    if (std::fwrite(block.data(), 1, count, copy.get()) != count)
      return failed("The temporary file can't be written");
  }
  if (std::ferror(stream) != 0) return failed("The input can't be read");
  if (std::fflush(copy.get()) != 0) return failed("The temporary file can't be written");
  *source = std::make_unique<FileSource>(std::move(copy));
  return {};
}

Status MemorySource::read(char* bytes, std::size_t room, std::size_t* count) {
  const std::size_t got = std::min(room, bytes_.size() - position_);
  if (got > 0) std::memcpy(bytes, bytes_.data() + position_, got);
  position_ += got;
  *count = got;
  return {};
}

Status MemorySource::rewind() {
  position_ = 0;
  return {};
}

}  // namespace store::exchange
