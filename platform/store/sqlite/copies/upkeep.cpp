#include "platform/store/sqlite/copies/upkeep.h"

#include <optional>

#include "platform/store/sqlite/copies/copy_name.h"
#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/files/durable_file.h"

namespace store {

namespace {

/// The same copy under a name that has the number; its former name where that can't be had, because another
/// program just looks into it, say.
std::string withCount(const std::string& copy, std::int64_t records) {
  const std::size_t start = copy.find_last_of("/\\") + 1;
  std::optional<CopyName> name = copyNameOf(std::string_view(copy).substr(start));
  if (!name) return copy;
  name->records = records;
  std::string counted = copy.substr(0, start) + textOf(*name);
  return renameFile(copy, counted, false) ? counted : copy;
}

}  // namespace

Status bringIn(CopyFolder& folder, const std::string& database, const std::string& copy,
               const std::vector<std::string>& spared, const std::function<bool()>& isStopped) try {
  if (!flushFile(copy)) {
    removeFile(copy);
    return {ErrorCode::inputOutput, "The copy could not be written to the disk."};
  }
  std::string kept = copy;
  const std::optional<std::int64_t> records = countRecords(copy, isStopped);
  if (records) kept = withCount(copy, *records);
  markReadOnly(kept, true);
  std::vector<std::string> all = spared;
  all.push_back(kept);
  folder.prune(database, all);
  return {};
} catch (const std::bad_alloc&) {
  // It is there, and what is left to do is done with the next one.
  return {};
}

}  // namespace store
