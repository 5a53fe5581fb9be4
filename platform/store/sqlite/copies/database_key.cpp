#include "platform/store/sqlite/copies/database_key.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sqlite/files/file_path.h"

namespace store {

namespace {

namespace fs = std::filesystem;

constexpr bool kHasDrives = fs::path::preferred_separator == '\\';

// FNV-1a with 64 bits, by its authors' constants.
std::uint64_t hashOf(const std::string& text) {
  constexpr std::uint64_t kStart = 0xcbf29ce484222325;
  constexpr std::uint64_t kFactor = 0x100000001b3;
  std::uint64_t hash = kStart;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * kFactor;
  return hash;
}

bool isPlain(char sign) {
  return (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') || (sign >= '0' && sign <= '9') ||
         sign == '-' || sign == '_';
}

}  // namespace

std::string databaseKeyOf(const std::string& path) {
  // Where there are drives the caller has the full path already, and it may begin with signs of its own.
  if (kHasDrives) return path;
  std::error_code error;
  const fs::path full = fs::weakly_canonical(fs::absolute(pathOf(path), error), error);
  if (error) return path;
  const std::u8string text = full.u8string();
  return {text.begin(), text.end()};
}

std::string folderNameOf(const std::string& key) {
  constexpr std::size_t kMostOfName = 40;
  const std::string folded = kHasDrives ? lowerCase(key) : key;
  std::string name = folded.substr(folded.find_last_of("/\\") + 1);
  if (name.size() > 4 && name.ends_with(".cdb")) name.resize(name.size() - 4);
  name.resize(std::min(name.size(), kMostOfName));
  for (char& sign : name) {
    if (!isPlain(sign)) sign = '_';
  }
  std::array<char, 24> number{};
  std::snprintf(number.data(), number.size(), "-%016llx", static_cast<unsigned long long>(hashOf(folded)));
  return name + number.data();
}

}  // namespace store
