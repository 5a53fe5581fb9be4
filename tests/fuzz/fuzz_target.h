#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

/// What every target defines: does with the bytes, which may be anything, what the product would do with
/// them. Returns 0. Ends the program when something is wrong with the result. Called by libFuzzer
/// (tools/fuzz), and by corpus_main.cpp with the bytes that are kept.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length);

namespace fuzz {

inline std::string_view textOf(const unsigned char* data, std::size_t length) {
  return {reinterpret_cast<const char*>(data), length};
}

/// Ends the program, with `what` as the reason, unless `holds`.
void require(bool holds, const char* what);

/// A file of this process in the folder for temporary files, which is removed at the end.
class TempFile {
 public:
  TempFile();
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  std::string path() const { return path_.string(); }

  /// Makes the file new with this content; what SQLite put beside a former one is gone.
  void write(std::string_view bytes) const;
  std::string read() const;

 private:
  void remove() const;

  std::filesystem::path path_;
};

}  // namespace fuzz
