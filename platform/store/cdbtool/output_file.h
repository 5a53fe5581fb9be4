#pragma once

#include <string>
#include <vector>

#include "platform/store/exchange/byte_sink.h"

namespace cdbtool {

/// A file that is there whole or not at all.
class OutputFile : public store::exchange::ByteSink {
 public:
  OutputFile() = default;
  /// Removes what was not kept.
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Begins a file that is to stand at `path`. An existing one is refused (fileExists) unless `replaces`;
  /// then it stays until keep() puts this one into its place. None of `inUse` is ever replaced.
  store::Status create(const std::string& path, bool replaces, const std::vector<std::string>& inUse);
  store::Status write(std::string_view bytes) override;
  /// Makes sure that all is on the disk, under its name.
  store::Status keep();
  bool isOpen() const { return file_ != nullptr; }

 private:
  std::string path_;
  std::string writtenPath_;
  store::exchange::FileHandle file_;
};

}  // namespace cdbtool
