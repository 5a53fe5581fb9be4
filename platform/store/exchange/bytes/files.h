#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace store::exchange {

/// Files as the system has them. Paths are UTF-8; a function that fails leaves the reason in errno.

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Opens the file at `path` for reading. Null when it can't be opened, as a folder can't.
FileHandle openToRead(const std::string& path);
/// Makes a new, empty file at `path` for writing; null when anything stands there already (EEXIST) or it
/// can't be made.
FileHandle createToWrite(const std::string& path);
/// Takes care that `file` is on the disk and not only on its way. False when that failed.
bool flushToDisk(std::FILE* file);
/// A new, empty file without a name for writing and reading, that is gone when it is closed or the program
/// ends. Null when there can be none.
FileHandle openTemporary();

/// What came of giving a file another name.
enum class Placing {
  done,
  taken,   ///< something stands there, and was left alone
  failed,  ///< the file has its old name, or its new one but perhaps not after a loss of power
};
/// Gives the file at `from`, which nobody has open, the name `to` in the same folder, durably and at one
/// stroke: at no moment does anything else stand there than what stood there before or the whole file. What
/// stands there is replaced only if `replaces`. `*reason` says why it failed.
Placing putIntoPlace(const std::string& from, const std::string& to, bool replaces, std::string* reason);

/// A number that no other running program has, for names beside a file.
unsigned long processNumber();

}  // namespace store::exchange
