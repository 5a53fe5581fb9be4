#include "platform/store/sqlite/copies/copy_folder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sqlite/copies/database_key.h"
#include "platform/store/sqlite/files/durable_file.h"
#include "platform/store/sqlite/files/file_path.h"
#include "platform/store/sqlite/files/new_file.h"

namespace store {

namespace {

namespace fs = std::filesystem;

// What is told here must be read by people too, who look into the folder.
constexpr const char* kPathFile = "Path.txt";
constexpr const char* kTooLargeFile = "Too large.txt";
// Before the way to a database from where the folder of the copies is.
constexpr std::string_view kFromHome = "./";
constexpr std::size_t kMostPathBytes = 100'000;
constexpr std::int64_t kUnfinishedLife = 60 * 60 * 1000;

constexpr bool kHasDrives = fs::path::preferred_separator == '\\';

bool isSeparator(char sign) {
  return sign == '/' || (kHasDrives && sign == '\\');
}

bool isSameName(const std::string& one, const std::string& other) {
  return kHasDrives ? equalsIgnoringCase(one, other) : one == other;
}

std::string textOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string joined(const std::string& folder, const std::string& name) {
  return textOf(pathOf(folder) / pathOf(name));
}

std::string readText(const std::string& path) {
  std::ifstream file(pathOf(path), std::ios::binary);
  std::string text(kMostPathBytes, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return text;
}

bool writeText(const std::string& path, const std::string& text) {
  const std::string unfinished = path + "~";
  {
    std::ofstream file(pathOf(unfinished), std::ios::binary | std::ios::trunc);
    file << text << std::flush;
    if (!file) return false;
  }
  return flushFile(unfinished) && renameFile(unfinished, path, true);
}

std::int64_t lengthOf(const std::string& path) {
  std::error_code error;
  const std::uintmax_t bytes = fs::file_size(pathOf(path), error);
  return error ? 0 : static_cast<std::int64_t>(bytes);
}

std::vector<KeptCopy> copiesIn(const std::string& folder) {
  std::vector<KeptCopy> copies;
  for (const std::string& file : namesIn(folder)) {
    const std::optional<CopyName> name = copyNameOf(file);
    if (!name) continue;
    const std::string path = joined(folder, file);
    copies.push_back({path, *name, lengthOf(path)});
  }
  std::sort(copies.begin(), copies.end(),
            [](const KeptCopy& one, const KeptCopy& other) { return one.name.time > other.name.time; });
  return copies;
}

std::int64_t systemNow() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

/// Of the nearest folder that there is.
std::optional<std::int64_t> systemFreeBytes(const std::string& folder) {
  std::error_code error;
  fs::path there = pathOf(folder);
  while (!fs::exists(there, error) && there.has_relative_path()) there = there.parent_path();
  return freeBytesAt(there);
}

}  // namespace

struct CopyFolder::History {
  std::string database;
  std::vector<KeptCopy> copies;  // newest first
};

std::int64_t CopyFolder::bytesOf(const std::vector<History>& histories) {
  std::int64_t bytes = 0;
  for (const History& history : histories) {
    for (const KeptCopy& copy : history.copies) bytes += copy.bytes;
  }
  return bytes;
}

CopyFolder::CopyFolder(CopySettings settings)
    : settings_(std::move(settings)), home_(databaseKeyOf(textOf(pathOf(settings_.folder).parent_path()))) {
  if (!home_.empty() && isSeparator(home_.back())) home_.pop_back();
  if (!settings_.now) settings_.now = systemNow;
  if (!settings_.freeBytes) {
    settings_.freeBytes = [folder = settings_.folder] { return systemFreeBytes(folder); };
  }
}

std::string CopyFolder::keyOf(const std::string& database) const {
  std::string key = databaseKeyOf(database);
  const bool isBelow = !home_.empty() && key.size() > home_.size() && isSeparator(key[home_.size()]) &&
                       isSameName(key.substr(0, home_.size()), home_);
  return isBelow ? std::string(kFromHome) + key.substr(home_.size() + 1) : key;
}

std::string CopyFolder::pathOfKey(const std::string& key) const {
  return key.starts_with(kFromHome) ? joined(home_, key.substr(kFromHome.size())) : key;
}

std::string CopyFolder::folderOf(const std::string& database) const {
  return joined(settings_.folder, folderNameOf(keyOf(database)));
}

std::vector<CopyFolder::History> CopyFolder::histories() const {
  std::vector<History> found;
  for (const std::string& name : namesIn(settings_.folder)) {
    const std::string folder = joined(settings_.folder, name);
    const std::string database = readText(joined(folder, kPathFile));
    if (database.empty() || folderNameOf(database) != name) continue;
    std::vector<KeptCopy> copies = copiesIn(folder);
    if (!copies.empty()) found.push_back({pathOfKey(database), std::move(copies)});
  }
  std::sort(found.begin(), found.end(), [](const History& one, const History& other) {
    return one.copies.front().name.time > other.copies.front().name.time;
  });
  return found;
}

std::vector<std::string> CopyFolder::databases() const {
  std::vector<std::string> paths;
  for (History& history : histories()) paths.push_back(std::move(history.database));
  return paths;
}

std::vector<KeptCopy> CopyFolder::copiesOf(const std::string& database) const {
  return copiesIn(folderOf(database));
}

bool CopyFolder::isCopy(const std::string& path) const {
  const fs::path file = pathOf(path);
  if (!copyNameOf(textOf(file.filename()))) return false;
  std::error_code error;
  return fs::equivalent(file.parent_path().parent_path(), pathOf(settings_.folder), error) && !error;
}

std::int64_t CopyFolder::allowedBytes(std::int64_t taken) const {
  const std::optional<std::int64_t> free = settings_.freeBytes();
  if (!free) return kMostBytes;
  constexpr std::int64_t kShare = 10;
  return std::min(kMostBytes, *free / kShare + taken / kShare);
}

Status CopyFolder::begin(const std::string& database, std::int64_t bytes, std::string* unfinished,
                         std::int64_t* time) {
  if (const std::int64_t taken = bytesOf(histories()); bytes > allowedBytes(taken)) {
    return {
        ErrorCode::tooLarge,
        "The file is too large for a copy: all copies together take at most a tenth of the free space, and "
        "2 GB."};
  }
  const std::string folder = folderOf(database);
  std::error_code error;
  fs::create_directories(pathOf(folder), error);
  if (error) return {ErrorCode::cannotOpen, "No folder can be made for it: " + error.message()};
  const std::string label = joined(folder, kPathFile);
  const std::string key = keyOf(database);
  if (readText(label) != key && !writeText(label, key)) {
    return {ErrorCode::cannotOpen, "No file can be made in the folder of the copies."};
  }
  // The names are in the order in which the copies were made, also where the clock was set back.
  std::int64_t moment = settings_.now();
  const std::vector<KeptCopy> copies = copiesIn(folder);
  constexpr int kMostTries = 1000;
  Status status;
  for (int tries = 0; tries < kMostTries; ++tries, ++moment) {
    const bool isTaken = std::any_of(copies.begin(), copies.end(),
                                     [&](const KeptCopy& copy) { return copy.name.time == moment; });
    if (isTaken) continue;
    const std::string path = joined(folder, unfinishedNameOf(moment));
    status = createNewFile(path);
    if (status.code() == ErrorCode::fileExists) continue;
    if (!status) return status;
    *unfinished = path;
    *time = moment;
    return {};
  }
  return {ErrorCode::cannotOpen, "No file can be made in the folder of the copies."};
}

Status CopyFolder::finish(const std::string& unfinished, const CopyName& name, std::string* kept) {
  const std::string path = textOf(pathOf(unfinished).parent_path() / pathOf(store::textOf(name)));
  if (!renameFile(unfinished, path, false)) {
    return {ErrorCode::inputOutput, "The copy can't be given its name."};
  }
  *kept = path;
  return {};
}

bool CopyFolder::isFirstTooLarge(const std::string& database) {
  const std::string folder = folderOf(database);
  std::error_code error;
  fs::create_directories(pathOf(folder), error);
  const std::string told = joined(folder, kTooLargeFile);
  if (fs::exists(pathOf(told), error)) return false;
  return writeText(told, database);
}

void CopyFolder::removeUnfinished(const std::string& folder) const {
  for (const std::string& name : namesIn(folder)) {
    const std::string_view stamp = std::string_view(name).substr(0, name.find('.'));
    const bool isBeside = name.ends_with("-journal") || name.ends_with("-wal") || name.ends_with("-shm");
    const std::string_view whole = isBeside ? std::string_view(name).substr(0, name.rfind('-')) : name;
    if (!isUnfinishedName(whole)) continue;
    const std::optional<CopyName> made = copyNameOf(std::string(stamp) + " change.cdb");
    if (made && made->time < settings_.now() - kUnfinishedLife) removeFile(joined(folder, name));
  }
}

void CopyFolder::prune(const std::string& database, const std::vector<std::string>& spared) {
  const auto isSpared = [&](const KeptCopy& copy) {
    return std::find(spared.begin(), spared.end(), copy.path) != spared.end();
  };
  const std::string folder = folderOf(database);
  removeUnfinished(folder);
  const std::vector<KeptCopy> copies = copiesIn(folder);
  if (!copies.empty()) removeFile(joined(folder, kTooLargeFile));
  std::vector<CopyName> names;
  for (const KeptCopy& copy : copies) names.push_back(copy.name);
  const std::vector<bool> kept = keptOf(names, settings_.now(), settings_.dayOf);
  for (std::size_t i = 0; i < copies.size(); ++i) {
    if (!kept[i] && !isSpared(copies[i])) removeFile(copies[i].path);
  }

  const std::vector<History> all = histories();
  std::int64_t taken = bytesOf(all);
  // The newest one of each database goes last.
  std::vector<KeptCopy> order;
  const auto isOlder = [](const KeptCopy& one, const KeptCopy& other) {
    return one.name.time < other.name.time;
  };
  for (const History& history : all)
    order.insert(order.end(), history.copies.begin() + 1, history.copies.end());
  std::sort(order.begin(), order.end(), isOlder);
  const auto newest = static_cast<std::ptrdiff_t>(order.size());
  for (const History& history : all) order.push_back(history.copies.front());
  std::sort(order.begin() + newest, order.end(), isOlder);
  const std::int64_t allowed = allowedBytes(taken);
  for (const KeptCopy& copy : order) {
    if (taken <= allowed) return;
    if (!isSpared(copy) && removeFile(copy.path)) taken -= copy.bytes;
  }
}

}  // namespace store
