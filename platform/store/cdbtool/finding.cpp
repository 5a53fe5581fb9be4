#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/cdbtool/text_table.h"
#include "platform/store/rows/text_needle.h"
#include "platform/store/rows/utf.h"

namespace cdbtool {

using store::Backend;
using store::RowStream;
using store::Status;

namespace {

std::u16string unitsOf(const std::string& text) {
  std::u16string units(text.size(), u'\0');
  units.resize(store::decodeUtf8(text, units.data()));
  return units;
}

class Search {
 public:
  Search(Backend& backend, const store::TextNeedle& needle) : backend_(backend), needle_(needle) {}

  Status searchTable(const std::string& name);
  std::int64_t foundCount() const { return foundCount_; }

 private:
  Backend& backend_;
  const store::TextNeedle& needle_;
  StandardOutput output_;
  std::int64_t foundCount_ = 0;
};

Status Search::searchTable(const std::string& name) {
  std::unique_ptr<RowStream> rows;
  if (Status status = backend_.openStream(name, store::SourceKind::table, &rows); !status) return status;
  const std::vector<store::Column>& columns = rows->columns();
  const std::vector<store::exchange::ValueKind> kinds = store::exchange::kindsOf(columns);
  for (std::int64_t record = 1;; ++record) {
    bool hasRow = false;
    if (Status status = rows->next(&hasRow); !status || !hasRow) return status;
    if (wasInterrupted()) return {store::ErrorCode::illegalOperation, "The search was cancelled."};
    for (std::size_t index = 0; index < columns.size(); ++index) {
      const store::Cell cell = rows->cell(index);
      if (cell.kind == store::CellKind::null) continue;
      const bool isText = cell.kind == store::CellKind::text;
      const std::string shown = isText ? std::string() : shownText(cell, kinds[index]);
      if (!needle_.occursIn(isText ? cell.bytes : std::string_view(shown))) continue;
      ++foundCount_;
      Status status = output_.write(name + "\t" + std::to_string(record) + "\t" + columns[index].name + "\t" +
                                    (isText ? shownText(cell, kinds[index]) : shown) + "\n");
      if (!status) return status;
    }
  }
}

}  // namespace

const store::CaseFolding& lettersOfSystem() {
  static const store::CaseFolding folding(foldedUnit);
  return folding;
}

int find(const FindRequest& request) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(request.file, &backend); !status) return failed(status);
  std::vector<std::string> tables;
  if (!request.table.empty()) {
    tables.push_back(request.table);
  } else if (Status status = userTables(*backend, &tables); !status) {
    return failed(status);
  }
  const store::TextNeedle needle(unitsOf(request.text), request.matchesCase ? nullptr : &lettersOfSystem());
  Search search(*backend, needle);
  for (const std::string& table : tables) {
    if (Status status = search.searchTable(table); !status) {
      return failed({status.code(), table + ": " + status.message()});
    }
  }
  Status status = StandardOutput::finish();
  return status ? kDone : failed(status);
}

}  // namespace cdbtool
