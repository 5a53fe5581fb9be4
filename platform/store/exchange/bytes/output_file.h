#pragma once

#include <string>
#include <vector>

#include "platform/store/exchange/bytes/byte_sink.h"
#include "platform/store/exchange/bytes/files.h"

namespace store::exchange {

/// A file that is there whole or not at all, whatever ends the program: it is written beside its place, under
/// a name with ".part" and a number behind it, and gets its own name at the end.
class OutputFile : public ByteSink {
 public:
  OutputFile() = default;
  /// Removes what was not kept.
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Begins a file that is to stand at `path` (UTF-8), which may also be a link to a file. An existing one is
  /// refused (fileExists) unless `replaces`; then it stays until keep() puts this one into its place, with
  /// the same rights. What is no file is never replaced, nor is any of `inUse` or what belongs to it
  /// (checkNotInUse).
  Status create(const std::string& path, bool replaces, const std::vector<std::string>& inUse);
  Status write(std::string_view bytes) override;
  /// Makes sure that all is on the disk, under its name. Fails with fileExists when another program has made
  /// a file of that name in the meantime and none is to be replaced.
  Status keep();
  bool isOpen() const { return file_ != nullptr; }

 private:
  Status checkPlace();
  void remove();

  std::string path_;         // as the user has written it
  std::string place_;        // where it is to stand
  std::string writtenPath_;  // where it stands as long as it is written; empty when it does not
  bool replaces_ = false;
  std::vector<std::string> inUse_;
  FileHandle file_;
};

}  // namespace store::exchange
