#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace testsupport {

/// The folder of the test program itself, absolute.
std::filesystem::path programFolder();

/// The folder of the built programs and modules ("Quivane Pocket PC.exe", adoce31.dll, ...), absolute.
/// It is "bin" beside the folder of the test programs, wherever the two were moved to.
std::filesystem::path binFolder();

/// Removes the folder, if it is there, with all that is in it, read-only files included; the running test
/// fails if something can't be removed.
void removeFolder(const std::filesystem::path& folder);

/// A new, empty folder of its own below the system's folder for temporary files; its name holds a
/// blank. The destructor removes it with all that is in it, read-only files included, and fails the
/// running test if something can't be removed, because then a file in it was left open.
class TempFolder {
 public:
  /// Throws std::filesystem::filesystem_error if no folder can be made.
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// The path of the file `name` (UTF-8) in this folder; nothing is created.
  std::filesystem::path file(std::string_view name) const;

 private:
  std::filesystem::path path_;
};

/// The bytes of a file. One that can't be read fails the running test.
std::string contentOf(const std::filesystem::path& path);
/// Makes or replaces a file; a failure fails the running test.
void writeFile(const std::filesystem::path& path, std::string_view content);

}  // namespace testsupport
