#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/text_table.h"
#include "platform/store/exchange/bytes/files_in_use.h"
#include "platform/store/sqlite/database_file.h"

namespace cdbtool {

using store::Backend;
using store::RowStream;
using store::Status;

namespace {

constexpr const char* kSound = "ok";

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

}  // namespace

int makeDatabase(const std::string& file) {
  Status status = store::createDatabase(file);
  if (status) return kDone;
  if (status.code() == store::ErrorCode::fileExists)
    return failed({status.code(), file + " exists already."});
  return failed({status.code(), file + ": " + status.message()});
}

int backUp(const std::string& file, const std::string& target) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  // Beside the database a file of some names would be taken for a part of it.
  Status status = store::exchange::checkNotInUse(target, {file});
  if (!status) return failed(status);
  status = backend->saveCopy(target);
  if (status) return kDone;
  if (status.code() == store::ErrorCode::fileExists)
    return failed({status.code(), target + " exists already."});
  return failed({status.code(), target + ": " + status.message()});
}

int check(const std::string& file, bool isQuiet) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  Console console(isQuiet);
  std::vector<std::string> lines;
  if (Status status = readTexts(*backend, "PRAGMA integrity_check", &lines); !status) return failed(status);
  const bool isWhole = lines.size() == 1 && lines.front() == kSound;
  std::vector<std::string> references;
  if (isWhole) {
    if (Status status = readBrokenReferences(*backend, &references); !status) return failed(status);
    if (!references.empty()) lines = references;
  }
  if (Status status = writeLines(lines); !status) return failed(status);
  if (!isWhole) {
    console.tell(
        "The file is damaged: what stands above contradicts itself. Work with a copy from before the damage; "
        "what "
        "can still be read comes out with cdbtool export, table by table.");
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
