// A recordset is walked, changed and deleted from while another program does to the file whatever it likes,
// at any moment. The other program is made by the means of Linux.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;

constexpr int kRows = 200;
/// The numbers of the rows tell from which of the files that follow each other they come.
constexpr int kPerFile = 1'000'000;

/// Every value of a row tells its number, but for what the walker writes, which is its own.
void fill(const fs::path& path, const std::string& mode, int generation, const std::string& key) {
  OtherProgram made(path);
  made.run("PRAGMA journal_mode = " + mode);
  made.run("CREATE TABLE t (id " + key + ", a Text, mark Text, b Text)");
  made.run("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < " +
           std::to_string(kRows) + ") INSERT INTO t SELECT i + " + std::to_string(generation * kPerFile) +
           ", 'a' || (i + " + std::to_string(generation * kPerFile) + "), '', 'b' || (i + " +
           std::to_string(generation * kPerFile) + ") FROM s");
}

struct Setting {
  const char* name;
  const char* mode;
  const char* key;
};

class OtherProgramsTest : public testing::TestWithParam<Setting> {
 protected:
  OtherProgramsTest() : place_(folder_.file("place")), path_(place_ / "data.cdb") {}

  // ---- The other program

  /// In the child: until it is killed.
  [[noreturn]] void disturb() {
    std::mt19937 random(4711);
    const auto below = [&](int count) { return std::uniform_int_distribution(0, count - 1)(random); };
    int generation = 0;
    int added = kRows;
    int lastColumn = 0;
    for (int number = 1;; ++number) {
      usleep(static_cast<useconds_t>(below(2000)));
      if (number % 150 == 0) {
        replace(++generation);
        added = kRows;
        continue;
      }
      OtherProgram other(path_);
      sqlite3_busy_timeout(other.handle(), 200);
      const std::string id = std::to_string(generation * kPerFile + 1 + below(added));
      switch (below(9)) {
        case 0:
          // Not the last one: its row id would be given to the next new row, which nobody could tell from it.
          other.tryRun("DELETE FROM t WHERE id = " + id + " AND rowid < (SELECT max(rowid) FROM t)");
          break;
        case 1: {
          const std::string next = std::to_string(generation * kPerFile + ++added);
          other.tryRun("INSERT INTO t (id, a, mark, b) VALUES (" + next + ", 'a" + next + "', '', 'b" + next +
                       "')");
          break;
        }
        case 2:
          other.tryRun("UPDATE t SET a = a || '', b = 'b' || id WHERE id = " + id);
          break;
        case 3:
          other.tryRun("VACUUM");
          break;
        case 4:
          lastColumn = number;
          other.tryRun("ALTER TABLE t ADD COLUMN more" + std::to_string(number) + " Text DEFAULT 'more'");
          break;
        case 5:
          other.tryRun("ALTER TABLE t DROP COLUMN more" + std::to_string(lastColumn));
          break;
        case 6:
          // Another lock than the one that reading meets.
          other.tryRun("BEGIN IMMEDIATE; UPDATE t SET b = 'half done'");
          usleep(static_cast<useconds_t>(below(20'000)));
          other.tryRun("ROLLBACK");
          break;
        case 7:
          other.tryRun("BEGIN EXCLUSIVE");
          usleep(static_cast<useconds_t>(below(20'000)));
          other.tryRun("COMMIT");
          break;
        default:
          // The same values in rows that stand elsewhere.
          other.tryRun(
              "BEGIN IMMEDIATE; CREATE TABLE u AS SELECT * FROM t ORDER BY random(); DELETE FROM t; "
              "INSERT INTO t SELECT * FROM u; DROP TABLE u; COMMIT");
          break;
      }
    }
  }

  /// As programs do that keep folders in step; the former file stays aside, whoever has it open.
  void replace(int generation) {
    fs::rename(place_, aside(generation - 1));
    usleep(3000);
    fs::create_directory(fresh());
    fill(fresh() / "data.cdb", GetParam().mode, generation, GetParam().key);
    fs::rename(fresh(), place_);
  }
  /// Where the next file is made, which the walker never sees there.
  fs::path fresh() const { return folder_.file("fresh"); }
  fs::path aside(int generation) const { return folder_.path() / ("aside " + std::to_string(generation)); }

  // ---- The walker

  /// Opens the file that stands there now, and its records; false as long as it can't.
  bool openRecords() {
    rows_.reset();
    seen_.clear();
    std::unique_ptr<Backend> opened;
    if (!openDatabase(utf8Of(path_), {.lockWait = 100}, &opened)) return false;
    backend_ = std::move(opened);
    std::unique_ptr<RowSource> source;
    if (!backend_->openRows("Select * from [t]", SourceKind::text, &source)) return false;
    auto made =
        std::make_unique<Recordset>(backend_, std::move(source), CursorType::keyset, LockType::optimistic);
    if (!made->load()) return false;
    rows_ = std::move(made);
    return true;
  }

  static bool textOf(Recordset& rows, std::size_t column, std::string* text) {
    Cell cell;
    if (!rows.cell(column, &cell)) return false;
    *text = cell.kind == CellKind::integer ? std::to_string(cell.integer) : std::string(cell.bytes);
    return true;
  }

  /// Reads the row at `index`; 0 when it can't be read. Whatever is shown belongs together and to that place.
  int read(std::size_t index) {
    std::string id;
    std::string a;
    std::string mark;
    std::string b;
    if (!textOf(*rows_, 0, &id) || !textOf(*rows_, 1, &a) || !textOf(*rows_, 2, &mark) ||
        !textOf(*rows_, 3, &b))
      return 0;
    ++readings_;
    EXPECT_EQ("a" + id, a);
    EXPECT_EQ("b" + id, b);
    EXPECT_TRUE(mark.empty() || mark.starts_with("w" + id + "-")) << id << ": " << mark;
    const auto [place, isNew] = seen_.try_emplace(index, id);
    EXPECT_EQ(place->second, id) << "row " << index << " has become another one";
    return std::stoi(id);
  }

  void step(std::mt19937& random) {
    const auto below = [&](std::int64_t count) {
      return std::uniform_int_distribution<std::int64_t>(0, count - 1)(random);
    };
    const std::int64_t count = rows_->recordCount();
    if (count == 0) return;
    const std::int64_t index = below(count);
    if (!rows_->setPosition(index + 1)) return;
    const int id = read(static_cast<std::size_t>(index));
    if (id == 0) return;
    const std::int64_t what = below(20);
    if (what <= 9) {
      const std::string mark = "w" + std::to_string(id) + "-" + std::to_string(++marks_);
      const bool isSet = static_cast<bool>(rows_->setValue(2, mark));
      if (isSet && rows_->update()) {
        written_[id] = mark;
      } else {
        std::string kept;
        if (isSet && textOf(*rows_, 2, &kept)) {
          EXPECT_EQ(mark, kept) << "what was written is kept until it is stored";
        }
        // The store may say no to what it has done all the same when the file was taken away meanwhile.
        doubtful_[id].push_back(mark);
        static_cast<void>(rows_->cancelUpdate());
      }
    } else if (what == 10 && count > kRows / 2) {
      // Some have to be left of those that were written.
      if (rows_->remove()) {
        removed_.insert(id);
        seen_.clear();
      }
    }
  }

  void expectFiles() {
    int found = 0;
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
      const fs::path file = entry.path() / "data.cdb";
      // The end may have come when it was half made.
      if (entry.path() == fresh() || !fs::exists(file)) continue;
      OtherProgram other(file);
      ASSERT_EQ("ok", other.ask("PRAGMA integrity_check"));
      EXPECT_EQ("0", other.ask("SELECT count(*) FROM t WHERE mark <> '' AND mark NOT LIKE 'w' || id || '-%'"))
          << "written into another row";
      EXPECT_EQ("0", other.ask("SELECT count(*) FROM t WHERE a <> 'a' || id OR b <> 'b' || id"));
      const int generation = std::stoi(other.ask("SELECT coalesce(max(id), 0) FROM t")) / kPerFile;
      for (const auto& [id, mark] : written_) {
        if (id / kPerFile != generation) continue;
        const std::string stands = other.ask("SELECT mark FROM t WHERE id = " + std::to_string(id));
        const auto& doubtful = doubtful_[id];
        EXPECT_TRUE(stands == "(none)" || stands == mark ||
                    std::find(doubtful.begin(), doubtful.end(), stands) != doubtful.end())
            << id << ": " << stands << " instead of " << mark;
        found += stands == mark ? 1 : 0;
      }
      for (const int id : removed_) {
        if (id / kPerFile == generation) {
          EXPECT_EQ("(none)", other.ask("SELECT mark FROM t WHERE id = " + std::to_string(id)));
        }
      }
    }
    EXPECT_GT(found, 5);
  }

  testsupport::TempFolder folder_;
  const fs::path place_;
  const fs::path path_;
  std::shared_ptr<Backend> backend_;
  std::unique_ptr<Recordset> rows_;
  std::map<std::size_t, std::string> seen_;
  std::map<int, std::string> written_;
  std::map<int, std::vector<std::string>> doubtful_;
  std::set<int> removed_;
  int readings_ = 0;
  int marks_ = 0;
};

TEST_P(OtherProgramsTest, NoRowIsTakenForAnother) {
  fs::create_directory(place_);
  fill(path_, GetParam().mode, 0, GetParam().key);
  const pid_t child = fork();
  if (child == 0) disturb();
  std::mt19937 random(7);
  int openings = 0;
  const auto isEnough = [&] {
    return openings > 3 && readings_ > 100 && removed_.size() > 3 && fs::exists(aside(0));
  };
  const auto begin = std::chrono::steady_clock::now();
  const auto lasts = [&](std::chrono::seconds time) {
    return std::chrono::steady_clock::now() - begin < time;
  };
  while ((lasts(std::chrono::seconds(4)) || (!isEnough() && lasts(std::chrono::seconds(40)))) &&
         !HasFailure()) {
    if (!openRecords()) continue;
    ++openings;
    for (int number = 0; number < 40 && !HasFailure(); ++number) step(random);
  }
  kill(child, SIGKILL);
  int ended = 0;
  waitpid(child, &ended, 0);
  EXPECT_TRUE(WIFSIGNALED(ended) && WTERMSIG(ended) == SIGKILL) << "nobody has disturbed to the end";
  rows_.reset();
  backend_.reset();
  std::printf("%d openings, %d readings, %zu rows written, %zu deleted\n", openings, readings_,
              written_.size(), removed_.size());
  EXPECT_TRUE(isEnough());
  expectFiles();
}

INSTANTIATE_TEST_SUITE_P(, OtherProgramsTest,
                         testing::Values(Setting{"Journal", "DELETE", "Integer"},
                                         Setting{"JournalWithKey", "DELETE", "Integer PRIMARY KEY"},
                                         Setting{"WriteAhead", "WAL", "Integer"}),
                         [](const testing::TestParamInfo<Setting>& setting) { return setting.param.name; });

}  // namespace
}  // namespace store
