#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/store/exchange/formats/csv_reader.h"
#include "platform/store/exchange/formats/csv_writer.h"
#include "platform/store/exchange/formats/row_writer.h"
#include "platform/store/exchange/import.h"
#include "tests/store/store_fixture.h"

namespace store::exchange {

/// Gives at most so many bytes at once, so that everything falls on the border of two parts some time.
class DripSource : public ByteSource {
 public:
  DripSource(std::string bytes, std::size_t most) : bytes_(std::move(bytes)), most_(most) {}

  Status read(char* bytes, std::size_t room, std::size_t* count) override {
    const std::size_t got = std::min({room, most_, bytes_.size() - position_});
    std::copy_n(bytes_.data() + position_, got, bytes);
    position_ += got;
    *count = got;
    return {};
  }
  Status rewind() override {
    position_ = 0;
    return {};
  }
  std::int64_t length() const override { return static_cast<std::int64_t>(bytes_.size()); }

 private:
  std::string bytes_;
  std::size_t most_;
  std::size_t position_ = 0;
};

class StringSink : public ByteSink {
 public:
  Status write(std::string_view bytes) override {
    text += bytes;
    return {};
  }
  std::string text;
};

/// Notes what it hears.
class Observer : public ImportObserver, public ExportObserver {
 public:
  bool goesOn(bool /*isStoring*/, std::int64_t /*done*/, std::int64_t /*total*/) override { return !cancels; }
  bool goesOn(std::int64_t /*rows*/) override { return !cancels; }
  Status rejected(const Record& record, const std::string& reason) override {
    rejects.push_back(std::to_string(record.line) + ": " + reason);
    return {};
  }
  bool cancels = false;
  std::vector<std::string> rejects;
};

/// Fields as text: [bare] "quoted" null, one record a line; "!" and the problem behind a record that has one.
inline std::string recordsOf(RecordReader& reader) {
  std::string text;
  for (bool hasRecord = true;;) {
    const Status status = reader.next(&hasRecord);
    if (!status) return text + "failed: " + status.message();
    if (!hasRecord) return text;
    text += std::to_string(reader.record().line) + ":";
    for (const Field& field : reader.record().fields) {
      const bool isQuoted = field.form == FieldForm::quoted || field.form == FieldForm::string;
      text += ' ';
      if (field.form == FieldForm::missing) {
        text += "null";
      } else {
        text += isQuoted ? '"' : '[';
        text += field.text;
        text += isQuoted ? '"' : ']';
      }
    }
    if (!reader.record().problem.empty()) text += " !" + reader.record().problem;
    text += '\n';
  }
}

class ExchangeTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    options_.table = "T";
  }

  Status tryPlan(const std::string& file) {
    MemorySource source(file);
    return planImport(*backend_, source, options_, observer_, &plan_);
  }
  Status tryImport(const std::string& file, ImportMode mode = ImportMode::allOrNothing) {
    MemorySource source(file);
    observer_.rejects.clear();
    if (Status status = planImport(*backend_, source, options_, observer_, &plan_); !status) return status;
    return runImport(*backend_, source, plan_, mode, observer_, &result_);
  }
  void import(const std::string& file, ImportMode mode = ImportMode::allOrNothing) {
    const Status status = tryImport(file, mode);
    ASSERT_TRUE(status) << status.message();
    ASSERT_EQ(observer_.rejects, std::vector<std::string>());
  }

  Status tryExport(const std::string& what, RowWriter& writer, std::string* text) {
    std::unique_ptr<RowStream> rows;
    if (Status status = backend_->openStream(what, SourceKind::unknown, &rows); !status) return status;
    StringSink sink;
    if (Status status = exportRows(*rows, writer, sink, observer_, &exported_); !status) return status;
    *text = sink.text;
    return {};
  }
  std::string exported(const std::string& what, RowWriter& writer) {
    std::string text;
    const Status status = tryExport(what, writer, &text);
    EXPECT_TRUE(status) << status.message();
    return text;
  }
  std::string csvOf(const std::string& what) {
    CsvWriter::Options csv;
    csv.lineEnd = "\n";
    CsvWriter writer(csv);
    return exported(what, writer);
  }

  /// The first column of the first row, asked by another program.
  std::string ask(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  /// Every value with its kind, in the order of the rows.
  std::string contents(const std::string& columns, const std::string& table = "T") {
    std::string list;
    for (std::size_t at = 0; at < columns.size();) {
      const std::size_t comma = std::min(columns.find(',', at), columns.size());
      const std::string name = columns.substr(at, comma - at);
      list += (list.empty() ? "" : " || ' ' || ") + ("typeof(" + name + ") || ':' || quote(" + name + ")");
      at = comma + 1;
    }
    return ask("SELECT group_concat(line, '; ') FROM (SELECT " + list + " AS line FROM " + table +
               " ORDER BY rowid)");
  }
  std::string typesOf(const std::string& table = "T") {
    return ask("SELECT group_concat(name || ' ' || type, ', ') FROM pragma_table_info('" + table + "')");
  }

  ImportOptions options_;
  ImportPlan plan_;
  ImportResult result_;
  ExportResult exported_;
  Observer observer_;
};

}  // namespace store::exchange
