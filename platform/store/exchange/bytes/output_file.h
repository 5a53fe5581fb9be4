#pragma once

#include <string>
#include <vector>

#include "platform/store/exchange/bytes/byte_sink.h"

namespace store::exchange {

/// A file that is there whole or not at all.
class OutputFile : public ByteSink {
 public:
  OutputFile() = default;
  /// Removes what was not kept.
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Begins a file that is to stand at `path`. An existing one is refused (fileExists) unless `replaces`;
  /// then it stays until keep() puts this one into its place. None of `inUse` is ever replaced.
  Status create(const std::string& path, bool replaces, const std::vector<std::string>& inUse);
  Status write(std::string_view bytes) override;
  /// Makes sure that all is on the disk, under its name.
  Status keep();
  bool isOpen() const { return file_ != nullptr; }

 private:
  std::string path_;
  std::string writtenPath_;
  FileHandle file_;
};

}  // namespace store::exchange
