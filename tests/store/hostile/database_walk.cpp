#include "tests/store/hostile/database_walk.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"

namespace store {

namespace {

constexpr std::int64_t kFirstTableId = 5;  // behind those of the catalogue

class Walk {
 public:
  Walk(std::shared_ptr<Backend> backend, const WalkLimits& limits)
      : backend_(std::move(backend)), limits_(limits) {}

  int run() {
    for (const char* source : {"MSysTables", "MSysFields", "MSysIndexes", "MSysProcs"}) {
      useRecords(source, SourceKind::table);
    }
    for (const std::string& name : tables()) {
      useRecords(name, SourceKind::table);
      useRecords("SELECT * FROM " + quotedName(name) + " ORDER BY 1 DESC, 2", SourceKind::text);
      useRecords("SELECT count(*), max(1) FROM " + quotedName(name), SourceKind::text);
    }
    return succeeded_;
  }

 private:
  std::unique_ptr<Recordset> open(std::string_view source, SourceKind kind) {
    if (limits_.patience.count() > 0) {
      const auto end = std::chrono::steady_clock::now() + limits_.patience;
      backend_->askWhileBusy([end](Busy) { return std::chrono::steady_clock::now() >= end; });
    }
    std::unique_ptr<RowSource> rows;
    if (!backend_->openRows(source, kind, &rows) || rows == nullptr) return nullptr;
    auto recordset =
        std::make_unique<Recordset>(backend_, std::move(rows), CursorType::keyset, LockType::optimistic);
    if (!recordset->load()) return nullptr;
    return recordset;
  }

  std::vector<std::string> tables() {
    std::vector<std::string> names;
    const std::unique_ptr<Recordset> catalogue = open("MSysTables", SourceKind::table);
    if (catalogue == nullptr) return names;
    while (!catalogue->isEof() && static_cast<int>(names.size()) < limits_.mostTables) {
      Cell name;
      Cell id;
      if (catalogue->cell(1, &id) && id.integer >= kFirstTableId && catalogue->cell(0, &name)) {
        names.emplace_back(name.bytes);
      }
      if (!catalogue->moveNext()) break;
    }
    return names;
  }

  void useRecords(std::string_view source, SourceKind kind) {
    const std::unique_ptr<Recordset> recordset = open(source, kind);
    if (recordset == nullptr) return;
    ++succeeded_;
    readFrom(*recordset);
    if (recordset->recordCount() > 0) {
      count(recordset->moveLast());
      std::string mark;
      if (recordset->bookmark(&mark)) count(recordset->moveFromBookmark(-1, mark));
    }
    if (limits_.writes && recordset->isUpdatable()) change(*recordset);
  }

  void readFrom(Recordset& recordset) {
    for (int records = 0; !recordset.isEof() && records < limits_.mostRecords; ++records) {
      Cell cell;
      for (std::size_t column = 0; column < recordset.columns().size(); ++column) {
        // An empty field would be there in a file that lost its content, too.
        if (recordset.cell(column, &cell)) succeeded_ += cell.kind == CellKind::null ? 0 : 1;
      }
      if (!recordset.moveNext()) return;
    }
  }

  void change(Recordset& recordset) {
    if (recordset.recordCount() > 0 && recordset.moveFirst()) {
      if (recordset.setValue(0, std::int64_t{100})) count(recordset.update());
      count(recordset.cancelUpdate());
      if (recordset.moveLast()) count(recordset.remove());
    }
    if (recordset.addNew()) count(recordset.update());
    count(recordset.cancelUpdate());
  }

  void count(const Status& status) { succeeded_ += status ? 1 : 0; }

  std::shared_ptr<Backend> backend_;
  WalkLimits limits_;
  int succeeded_ = 0;
};

}  // namespace

int walkDatabase(const std::string& path, const WalkLimits& limits) {
  std::unique_ptr<Backend> backend;
  if (!openDatabase(path, {.lockWait = 0}, &backend)) return 0;
  return 1 + Walk(std::move(backend), limits).run();
}

}  // namespace store
