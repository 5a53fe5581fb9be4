#include "benchmarks/order_measures.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "benchmarks/bare_database.h"
#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"

namespace bench {

namespace {

void require(const store::Status& status) {
  if (status) return;
  std::fprintf(stderr, "bench: %s\n", status.message().c_str());
  std::exit(1);
}

std::int64_t openRecords(const std::shared_ptr<store::Backend>& backend, const std::string& sql) {
  std::unique_ptr<store::RowSource> rows;
  require(backend->openRows(sql, store::SourceKind::text, &rows));
  store::Recordset recordset(backend, std::move(rows), store::CursorType::keyset,
                             store::LockType::optimistic);
  require(recordset.load());
  return recordset.recordCount();
}

/// Both sides open their connection anew, and run once before it counts.
double secondsOfEngine(const std::string& path, const std::string& sql) {
  std::unique_ptr<store::Backend> opened;
  require(store::openDatabase(path, {}, &opened));
  const std::shared_ptr<store::Backend> backend = std::move(opened);
  openRecords(backend, sql);
  return secondsOf([&] { openRecords(backend, sql); });
}

double secondsOfBare(const std::string& path, const std::string& sql) {
  BareDatabase bare(path);
  bare.runToEnd(sql);
  return secondsOf([&] { bare.runToEnd(sql); });
}

}  // namespace

std::vector<Measure> makeOrderMeasures(const std::string& path) {
  std::vector<Measure> measures;
  const auto add = [&](const char* name, double limit, const std::string& behind,
                       const std::string& bareBehind) {
    const std::string sql = "Select * from [Measurements] " + behind;
    const std::string bare = "SELECT rowid FROM Measurements " + bareBehind;
    measures.push_back({name, "ms", 1e3, 1, limit, [=] { return secondsOfEngine(path, sql); },
                        [=] { return secondsOfBare(path, bare); }, kLongRounds});
  };
  add("order by numbers", 1.2, "ORDER BY [Level] DESC", "ORDER BY Level DESC");
  add("order by texts", 1.2, "ORDER BY quivane_fold([Observer])", "ORDER BY Observer COLLATE NOCASE");
  add("order by two columns", 1.2, "ORDER BY quivane_fold([Station]), [Reading] DESC",
      "ORDER BY Station COLLATE NOCASE, Reading DESC");
  add("filter by a value", 1.3, "WHERE [Level] = 4711", "WHERE Level = 4711");
  add("filter by a text", 1.2, "WHERE quivane_contains('heron', [Remarks])", "WHERE Remarks LIKE '%heron%'");
  return measures;
}

}  // namespace bench
