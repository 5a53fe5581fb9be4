// A program that does its work on a database which others use at the same time: it adds, changes, reads and
// rebuilds, and says which of its changes were acknowledged.
//
//   store_writer DATABASE WRITER-NAME SECONDS
//
// Says "ready" when the database is open and begins when it is given a line; then "added N" and "changed N"
// when all rows of round N are stored, and changed. Exit code 1 and a line on the standard error when
// something else went wrong than that the others had to be waited for.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"

namespace {

using store::ErrorCode;
using store::Status;
using Clock = std::chrono::steady_clock;

constexpr int kLockWait = 2000;
constexpr int kRoundsBetweenRebuilds = 7;
// Between two changes; without pauses the others would hardly ever come to their turn between two of ours.
constexpr int kLongestPause = 30;  // milliseconds
// A row of several pages, so that a change is more than one write.
constexpr std::size_t kLongText = 9000;
constexpr std::size_t kWriterColumn = 1;
constexpr std::size_t kRoundColumn = 2;
constexpr std::size_t kPartColumn = 3;
constexpr std::size_t kContentColumn = 4;

void say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

[[noreturn]] void fail(const std::string& what, const Status& status) {
  std::fprintf(stderr, "store_writer: %s: %s\n", what.c_str(), status.message().c_str());
  std::exit(1);
}

class Writer {
 public:
  Writer(std::string path, std::string name) : path_(std::move(path)), name_(std::move(name)) {
    std::unique_ptr<store::Backend> opened;
    untilFree("open", [&] { return store::openDatabase(path_, {.lockWait = kLockWait}, &opened); });
    backend_ = std::move(opened);
    std::unique_ptr<store::RowSource> rows;
    untilFree("records", [&] {
      return backend_->openRows("SELECT * FROM [t] WHERE writer = '" + name_ + "'", store::SourceKind::text,
                                &rows);
    });
    recordset_ = std::make_unique<store::Recordset>(backend_, std::move(rows), store::CursorType::keyset,
                                                    store::LockType::optimistic);
    untilFree("load", [&] { return recordset_->load(); });
  }

  void round(int number) {
    addRecord(number);
    run("INSERT INTO t (writer, round, part, content) WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i "
        "+ 1 "
        "FROM s WHERE i < 30) SELECT '" +
        name_ + "', " + std::to_string(number) + ", i, printf('%0700d', i) FROM s");
    say("added " + std::to_string(number));
    run("UPDATE t SET state = 'changed' WHERE writer = '" + name_ +
        "' AND round = " + std::to_string(number));
    say("changed " + std::to_string(number));
    readBack(number);
    if (number % kRoundsBetweenRebuilds == 0) {
      // Another one who never stops reading may keep the file from being rebuilt; then it is left.
      std::int64_t affected = 0;
      std::unique_ptr<store::RowSource> rows;
      const Status status = backend_->run("VACUUM", &affected, &rows);
      if (!status && status.code() != ErrorCode::locked) fail("VACUUM", status);
    }
  }

 private:
  template <class Action>
  void untilFree(const std::string& what, Action action) {
    Status status = action();
    while (status.code() == ErrorCode::locked) status = action();
    if (!status) fail(what, status);
  }

  void pause() {
    std::this_thread::sleep_for(
        std::chrono::milliseconds(std::uniform_int_distribution(0, kLongestPause)(random_)));
  }

  void run(const std::string& sql) {
    pause();
    untilFree(sql, [&] {
      std::int64_t affected = 0;
      std::unique_ptr<store::RowSource> rows;
      return backend_->run(sql, &affected, &rows);
    });
  }

  void addRecord(int number) {
    pause();
    untilFree("addNew", [&] { return recordset_->addNew(); });
    setValue(kWriterColumn, name_);
    setValue(kRoundColumn, std::int64_t{number});
    setValue(kPartColumn, std::int64_t{0});
    setValue(kContentColumn, std::string(kLongText, 'x'));
    untilFree("update", [&] { return recordset_->update(); });
  }

  void setValue(std::size_t column, store::Value value) {
    if (Status status = recordset_->setValue(column, std::move(value)); !status) fail("setValue", status);
  }

  void readBack(int number) {
    pause();
    store::Cell cell;
    untilFree("cell", [&] { return recordset_->cell(kRoundColumn, &cell); });
    if (cell.kind != store::CellKind::integer || cell.integer != number) {
      fail("the record that was added reads as another one", {});
    }
  }

  std::string path_;
  std::string name_;
  std::mt19937 random_{std::random_device{}()};
  std::shared_ptr<store::Backend> backend_;
  std::unique_ptr<store::Recordset> recordset_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: store_writer DATABASE WRITER-NAME SECONDS\n");
    return 2;
  }
  Writer writer(argv[1], argv[2]);
  say("ready");
  if (std::getchar() == EOF) return 2;
  const Clock::time_point end = Clock::now() + std::chrono::seconds(std::atoi(argv[3]));
  for (int number = 1; Clock::now() < end; ++number) writer.round(number);
  return 0;
}
