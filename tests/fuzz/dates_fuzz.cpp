// The bytes are a date as somebody may write it into a statement, or as another program may have stored it.
#include <memory>

#include "platform/store/rows/iso_date.h"
#include "platform/store/sqlite/database_file.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

void readAsStored(std::string_view text) {
  using store::DateShape;
  const std::optional<double> date = store::parseIsoDate(text);
  if (!date) return;
  for (const DateShape shape : {DateShape::dateTime, DateShape::date, DateShape::time}) {
    const std::optional<std::string> written = formatIsoDate(*date, shape);
    fuzz::require(written.has_value(), "what was read as a date can be written");
    const std::optional<double> again = store::parseIsoDate(*written);
    fuzz::require(again.has_value(), "what was written can be read");
    fuzz::require(formatIsoDate(*again, shape) == written, "and is the same");
  }
}

std::string quoted(std::string_view text) {
  std::string literal = "'";
  for (const char c : text) {
    if (c == '\0') break;
    literal += c;
    if (c == '\'') literal += c;
  }
  return literal + "'";
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  const std::string_view text = fuzz::textOf(data, length);
  readAsStored(text);
  static const fuzz::TempFile file;
  static const std::unique_ptr<store::Backend> backend = [] {
    file.write({});
    std::filesystem::remove(file.path());
    std::unique_ptr<store::Backend> opened;
    std::unique_ptr<store::RowSource> rows;
    std::int64_t affected = 0;
    fuzz::require(
        store::createDatabase(file.path()) && store::openDatabase(file.path(), {}, &opened) &&
            opened->run("CREATE TABLE t (d Datetime, e Date, n Integer)", &affected, &rows) &&
            opened->run("INSERT INTO t VALUES ('2001-03-09 14:05:07', '2001-03-09', 1)", &affected, &rows),
        "a database can be made");
    return opened;
  }();
  const std::string literal = quoted(text);
  std::unique_ptr<store::RowSource> rows;
  for (const std::string& sql : {"SELECT * FROM t WHERE d >= " + literal + " AND e <> " + literal,
                                 "SELECT n FROM t WHERE d BETWEEN " + literal + " AND '2010/1/1' OR e IN (" +
                                     literal + ", '1/2/2003')"}) {
    const store::Status status = backend->openRows(sql, store::SourceKind::text, &rows);
    fuzz::require(status || !status.message().empty(), "a refusal has a reason");
  }
  return 0;
}
