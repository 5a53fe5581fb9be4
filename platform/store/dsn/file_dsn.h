#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/status.h"

namespace store {

/// A link to a server's database: a file DSN as the platform's own ODBC writes and reads it. A text file
/// whose first line is "[ODBC]"; each line after it is KEYWORD=value. Empty lines and lines that begin with a
/// semicolon say nothing, and what stands behind a second line in brackets belongs to somebody else. The file
/// is only ever read.
struct FileDsn {
  struct Entry {
    std::string keyword;  ///< as spelled; each one once, whatever the letter case
    std::string value;    ///< without the braces around it; may be empty
  };
  std::vector<Entry> entries;  ///< in the order of the file, those that nobody here knows too

  /// The value of the keyword in any letter case; null when there is none.
  const std::string* find(std::string_view keyword) const;
};

/// No file DSN is longer.
inline constexpr std::size_t kMostFileDsnBytes = 65536;

/// Whether a file that begins like this says of itself that it is a file DSN: its first line is "[ODBC]", in
/// any letter case, maybe with blanks behind it and a byte-order mark before it.
bool isFileDsn(std::string_view beginning);

/// Reads the text of a file DSN: UTF-8, with or without a byte-order mark, or UTF-16 with one. cannotOpen,
/// with the line and the reason for the user, when it is too long, when a line is no KEYWORD=value, when it
/// names neither a driver nor a data source, and when it would make the driver manager read or write another
/// file; `*dsn` is then untouched. No message holds a value: one of them may be a password.
Status readFileDsn(std::string_view bytes, FileDsn* dsn);

/// The text by which the driver manager connects: all entries, quoted where that is needed.
std::string connectionTextOf(const FileDsn& dsn);

/// Whether there is an ordinary file at `path` (UTF-8) that isFileDsn(). False too when it can't be read. Not
/// to be asked of a database that may be open: on some systems the closing of any handle gives up a program's
/// locks on the file.
bool isFileDsnAt(const std::string& path);

/// Reads the file DSN at `path` (UTF-8). Failures are those of readFileDsn(), and cannotOpen when the file
/// can't be read.
Status readFileDsnAt(const std::string& path, FileDsn* dsn);

}  // namespace store
