#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/rows/status.h"

namespace store::exchange {

/// Bytes that can be read from the beginning as often as need be.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// Reads up to `room` bytes, at least one unless the end is reached; `*count` is then 0.
  virtual Status read(char* bytes, std::size_t room, std::size_t* count) = 0;
  /// The next read begins at the first byte again.
  virtual Status rewind() = 0;
  /// How many bytes there are, as far as that is known; for the display of progress.
  virtual std::int64_t length() const = 0;
};

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Opens the file at `path` (UTF-8) for reading. Null when it can't be opened, as a folder can't.
FileHandle openToRead(const std::string& path);
/// Makes a new, empty file at `path` (UTF-8) for writing; null when anything stands there already or it can't
/// be made.
FileHandle createToWrite(const std::string& path);
/// Takes care that `file` is on the disk and not only on its way. False when that failed.
bool flushToDisk(std::FILE* file);
/// A number that no other running program has, for names beside a file.
unsigned long processNumber();
/// A new, empty file without a name for writing and reading, that is gone when it is closed or the program
/// ends. Null when there can be none.
FileHandle openTemporary();

/// The bytes of a file that can be read again from its beginning.
class FileSource : public ByteSource {
 public:
  explicit FileSource(FileHandle file);

  Status read(char* bytes, std::size_t room, std::size_t* count) override;
  Status rewind() override;
  std::int64_t length() const override { return length_; }

 private:
  FileHandle file_;
  std::int64_t length_ = 0;
};

/// Opens what `path` (UTF-8) names. What can't be read twice, a pipe for one, is first copied into a
/// temporary file. cannotOpen or inputOutput on failure.
Status openSource(const std::string& path, std::unique_ptr<ByteSource>* source);
/// The same from a stream that is open, to its end.
Status copyStream(std::FILE* stream, std::unique_ptr<ByteSource>* source);

/// Bytes in memory, which outlive the source.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}

  Status read(char* bytes, std::size_t room, std::size_t* count) override;
  Status rewind() override;
  std::int64_t length() const override { return static_cast<std::int64_t>(bytes_.size()); }

 private:
  std::string_view bytes_;
  std::size_t position_ = 0;
};

}  // namespace store::exchange
