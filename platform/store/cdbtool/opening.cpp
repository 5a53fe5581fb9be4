#include <fstream>
#include <optional>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/opening/open_path.h"
#include "platform/store/rows/secret_text.h"
#include "platform/store/sqlite/files/file_path.h"

namespace cdbtool {

using store::ErrorCode;
using store::Status;

namespace {

Status readPassword(const std::string& path, std::optional<std::string>* password) {
  std::ifstream file(store::pathOf(path), std::ios::binary);
  std::string line;
  std::getline(file, line);
  if (file.bad() || (file.fail() && !file.eof())) {
    return {ErrorCode::inputOutput, path + ": The file of the password can't be read."};
  }
  if (line.ends_with('\r')) line.pop_back();
  if (line.empty()) return {ErrorCode::inputOutput, path + ": The first line of the file has no password."};
  *password = std::move(line);
  return {};
}

}  // namespace

Status openFile(const DatabaseFile& file, std::unique_ptr<store::Backend>* backend) {
  store::OpenOptions options;
  // This program stays small beside what it works on.
  options.pageCacheKibibytes = 16 * 1024;
  options.question = [](store::Busy) { return wasInterrupted(); };
  options.folding = lettersOfSystem;
  if (!file.passwordFile.empty()) {
    if (Status status = readPassword(file.passwordFile, &options.password); !status) return status;
  }
  Status status = openPath(file.path, options, backend);
  if (status.code() == ErrorCode::passwordWanted && !options.password) {
    options.password = askSecret("Password for " + file.path + ": ");
    if (options.password) {
      status = openPath(file.path, options, backend);
    } else {
      status = {status.code(), status.message() + " --password-file names a file that has it."};
    }
  }
  if (options.password) store::wipe(&*options.password);
  if (status) return {};
  return {status.code(), file.path + ": " + status.message()};
}

}  // namespace cdbtool
