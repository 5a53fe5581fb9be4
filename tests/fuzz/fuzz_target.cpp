#include "tests/fuzz/fuzz_target.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include "tests/support/process.h"

namespace fuzz {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "wrong: %s\n", what);
  std::abort();
}

TempFile::TempFile()
    : path_(std::filesystem::temp_directory_path() /
            ("quivane fuzz " + std::to_string(testsupport::processNumber()) + ".cdb")) {}

TempFile::~TempFile() {
  remove();
}

void TempFile::remove() const {
  for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
    std::error_code ignored;
    std::filesystem::remove(path() + suffix, ignored);
  }
}

void TempFile::write(std::string_view bytes) const {
  remove();
  std::ofstream file(path_, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  require(static_cast<bool>(file), "the file can be written");
}

std::string TempFile::read() const {
  std::ifstream file(path_, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace fuzz
