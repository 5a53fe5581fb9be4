#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/exchange/bytes/files.h"
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
