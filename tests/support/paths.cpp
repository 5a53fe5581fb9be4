#include "tests/support/paths.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "gtest/gtest.h"
#include "tests/support/process.h"

namespace testsupport {
namespace fs = std::filesystem;
namespace {

/// Lets everyone write to all that is below `folder`: a read-only file can't be removed on Windows,
/// nor what is in a read-only folder elsewhere.
void makeWritable(const fs::path& folder) {
  std::error_code ignored;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
  for (fs::recursive_directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
    if (!entry->is_symlink(ignored)) {
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
}

}  // namespace

fs::path programFolder() {
  return programPath().parent_path();
}

fs::path binFolder() {
  return programFolder().parent_path() / "bin";
}

TempFolder::TempFolder() {
  static std::atomic<unsigned> number = 0;
  // A folder of the same name can only be left from an earlier process with the same number.
  do {
    path_ = fs::temp_directory_path() /
            ("quivane test " + std::to_string(processNumber()) + "-" + std::to_string(++number));
  } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
  removeFolder(path_);
}

void removeFolder(const fs::path& folder) {
  std::error_code error;
  fs::remove_all(folder, error);
  if (error) {
    makeWritable(folder);
    fs::remove_all(folder, error);
  }
  if (error) {
    ADD_FAILURE() << "can't remove " << folder << ": " << error.message();
  }
}

fs::path TempFolder::file(std::string_view name) const {
  return path_ / std::u8string(name.begin(), name.end());
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeFile(const fs::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  EXPECT_TRUE(file.good()) << path;
}

}  // namespace testsupport
