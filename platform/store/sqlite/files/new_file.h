#pragma once

#include <filesystem>
#include <string>

#include "platform/store/rows/status.h"

namespace store {

/// Makes an empty file at `path` (UTF-8), so that it is certain who made it: cannotOpen when it is no file's
/// name or none can be made there, fileExists when anything stands there already, or when another program
/// makes something there at the same moment.
Status createNewFile(const std::string& path);

/// Takes a database that createNewFile has made away again, and its journal, at the end of its life, also
/// when that comes by an exception. To be made before the file, and before what opens it.
class NewFileRemoval {
 public:
  /// May throw std::bad_alloc.
  explicit NewFileRemoval(const std::string& path);
  ~NewFileRemoval();
  NewFileRemoval(const NewFileRemoval&) = delete;
  NewFileRemoval& operator=(const NewFileRemoval&) = delete;

  /// The file is made: from now on it is removed.
  void begin() { removes_ = true; }
  /// It is what it is to be, and stays.
  void cancel() { removes_ = false; }

 private:
  std::filesystem::path path_;
  std::filesystem::path journal_;
  bool removes_ = false;
};

}  // namespace store
