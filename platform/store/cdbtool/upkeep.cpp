#include <algorithm>
#include <array>
#include <sstream>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/text_table.h"
#include "platform/store/exchange/bytes/byte_source.h"
#include "platform/store/exchange/bytes/files_in_use.h"
#include "platform/store/sqlite/database_file.h"
#include "platform/store/sqlite/files/file_head.h"

namespace cdbtool {

using store::Backend;
using store::RowStream;
using store::Status;

namespace {

constexpr const char* kSound = "ok";
constexpr std::string_view kAllCanBeRead = ": all can be read, ";

Status writeLines(const std::vector<std::string>& lines) {
  StandardOutput output;
  for (const std::string& line : lines) {
    if (Status status = output.write(line + "\n"); !status) return status;
  }
  return StandardOutput::finish();
}

/// Records that name another record which is not there.
Status readBrokenReferences(Backend& backend, std::vector<std::string>* lines) {
  std::unique_ptr<RowStream> rows;
  Status status = backend.openStream("PRAGMA foreign_key_check", store::SourceKind::text, &rows);
  for (bool hasRow = true; status;) {
    status = rows->next(&hasRow);
    if (!status || !hasRow) break;
    const auto text = [&rows](std::size_t index) {
      return shownText(rows->cell(index), store::exchange::ValueKind::any);
    };
    lines->push_back(text(0) + ": record " + text(1) + " refers to a record of " + text(2) +
                     " that is not there");
  }
  return status;
}

/// What SQLite finds wrong, a line for each; on failure those that it has found before.
Status readFindings(Backend& backend, std::vector<std::string>* lines) {
  std::unique_ptr<RowStream> rows;
  Status status = backend.openStream("PRAGMA integrity_check", store::SourceKind::text, &rows);
  for (bool hasRow = true; status;) {
    status = rows->next(&hasRow);
    if (!status || !hasRow) break;
    // One row may hold many of them.
    std::istringstream findings(std::string(rows->cell(0).bytes));
    for (std::string line; std::getline(findings, line);) lines->push_back(line);
  }
  return status;
}

std::string describeReading(const Status& status, std::int64_t count) {
  if (status) return std::string(kAllCanBeRead) + countOfRecords(count);
  const std::string first = ": only the first " + std::to_string(count) + " can be read";
  return status.code() == store::ErrorCode::damaged ? first : first + ": " + status.message();
}

/// Of which tables all records can be read, and of which only the first. Fails when the user stops it.
Status tellTables(Backend& backend, std::vector<std::string>* lines) {
  std::vector<std::string> names;
  if (Status status = userTables(backend, &names); !status) return status;
  for (const std::string& name : names) {
    std::unique_ptr<RowStream> rows;
    std::int64_t count = 0;
    Status status = backend.openStream(name, store::SourceKind::table, &rows);
    for (bool hasRow = true; status; ++count) {
      status = rows->next(&hasRow);
      if (!status || !hasRow) break;
      // What a long value is continued with is read only when it is asked for.
      for (std::size_t index = 0; index < rows->columns().size(); ++index) rows->cell(index);
    }
    if (status.code() == store::ErrorCode::stopped) return status;
    lines->push_back(name + describeReading(status, count));
  }
  return {};
}

/// A record that is in the table and not in its index, or the other way round.
bool isAboutAnIndex(const std::string& line) {
  return line.find(" missing from index ") != std::string::npos ||
         line.starts_with("wrong # of entries in index ") || line.starts_with("non-unique entry in index ") ||
         line.find(kAllCanBeRead) != std::string::npos;
}

/// Why the file can't be opened, with how much of it is missing, where its head tells that.
Status withMissingPart(const Status& status, const std::string& file) {
  constexpr std::size_t kHeadBytes = 100;
  std::array<char, kHeadBytes> head{};
  std::unique_ptr<store::exchange::ByteSource> source;
  std::size_t count = 0;
  if (!store::exchange::openSource(file, &source) || !source->read(head.data(), kHeadBytes, &count))
    return status;
  const std::int64_t missing = store::missingBytes({head.data(), count}, source->length());
  if (missing == 0) return status;
  return {status.code(),
          status.message() + ". The last " + std::to_string(missing) + " of its " +
              std::to_string(source->length() + missing) +
              " bytes are missing: it was not copied to its end, or cut. Work with another copy."};
}

}  // namespace

int makeDatabase(const std::string& file) {
  Status status = store::createDatabase(file);
  if (status) return kDone;
  if (status.code() == store::ErrorCode::fileExists)
    return failed({status.code(), file + " exists already."});
  return failed({status.code(), file + ": " + status.message()});
}

int backUp(const DatabaseFile& file, const std::string& target) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  // Beside the database a file of some names would be taken for a part of it.
  Status status = store::exchange::checkNotInUse(target, {file.path});
  if (!status) return failed(status);
  status = backend->saveCopy(target);
  if (status) return kDone;
  if (status.code() == store::ErrorCode::fileExists)
    return failed({status.code(), target + " exists already."});
  return failed({status.code(), target + ": " + status.message()});
}

int check(const DatabaseFile& file, bool isQuiet) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) {
    if (status.code() == store::ErrorCode::cannotOpen) status = withMissingPart(status, file.path);
    return failed(status);
  }
  Console console(isQuiet);
  std::vector<std::string> lines;
  Status looked = readFindings(*backend, &lines);
  const bool isDamaged = looked.code() == store::ErrorCode::damaged;
  if (!looked && !isDamaged) return failed(looked);
  // Where the damage is great the search for it ends early.
  if (isDamaged) lines.push_back("the search ended here: " + looked.message());
  const bool isWhole = lines.size() == 1 && lines.front() == kSound;
  std::vector<std::string> references;
  if (isWhole) {
    if (Status status = readBrokenReferences(*backend, &references); !status) return failed(status);
    if (!references.empty()) lines = references;
  } else if (Status status = tellTables(*backend, &lines); !status) {
    return failed(status);
  }
  if (Status status = writeLines(lines); !status) return failed(status);
  if (!isWhole) {
    const bool canBeMended = std::all_of(lines.begin(), lines.end(), isAboutAnIndex);
    console.tell(
        canBeMended
            ? "The file is damaged, but no more than its indexes: cdbtool query FILE REINDEX makes them anew."
            : "The file is damaged. Work with a copy from before the damage. The tables of which all records "
              "can be read come out whole with cdbtool export; of the others it writes the first ones to "
              "the standard output (not with -o) before it fails.");
    return kFailed;
  }
  if (!references.empty()) {
    console.tell("The file is sound, but these records break the rules of its tables.");
    return kFailed;
  }
  console.tell("The file is sound, and every record keeps to the rules of its table.");
  return kDone;
}

}  // namespace cdbtool
