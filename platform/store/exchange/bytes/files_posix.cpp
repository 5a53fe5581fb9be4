#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/store/exchange/bytes/byte_source.h"

namespace store::exchange {

FileHandle openToRead(const std::string& path) {
  FileHandle file(std::fopen(path.c_str(), "rbe"));
  struct stat about {};
  if (file != nullptr && fstat(fileno(file.get()), &about) == 0 && S_ISDIR(about.st_mode)) {
    file.reset();
    errno = EISDIR;
  }
  return file;
}

FileHandle createToWrite(const std::string& path) {
  return FileHandle(std::fopen(path.c_str(), "wbxe"));
}

bool flushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
  // What is no file can't be flushed and need not.
  return fsync(fileno(file)) == 0 || errno == EINVAL || errno == EROFS;
}

unsigned long processNumber() {
  return static_cast<unsigned long>(getpid());
}

FileHandle openTemporary() {
  return FileHandle(std::tmpfile());
}

}  // namespace store::exchange
