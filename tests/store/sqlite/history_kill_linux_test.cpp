// A program that is killed while it takes changes back and does them again: the file is as before the step or
// as behind it. Programs are made and killed by the means of Linux.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/store/sqlite/history_fixture.h"

namespace store {
namespace {

using Way = ChangeHistory::Way;

constexpr int kSteps = 5;
constexpr int kRows = 60;
constexpr int kKills = 20;  // in each mode, unless QUIVANE_KILLS says otherwise

/// What the child tells: how many of its steps count in the file, and will when it has done what it begins
/// now.
struct Told {
  int now = 0;
  int next = 0;
};

class HistoryKillTest : public HistoryTest {
 protected:
  void begin(const std::string& mode) {
    remake("PRAGMA journal_mode=" + mode +
           "; CREATE TABLE t(a TEXT, n INTEGER); CREATE TABLE log(a TEXT PRIMARY KEY, n INTEGER);"
           "CREATE TRIGGER note AFTER UPDATE ON t BEGIN INSERT INTO log VALUES(old.rowid || ' ' || new.n, "
           "new.n);"
           " END; WITH RECURSIVE s(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM s WHERE i < " +
           std::to_string(kRows) + ") INSERT INTO t SELECT printf('%0400d', i), 0 FROM s");
  }

  /// In the child: makes the steps, and then takes some back and does some again for ever.
  [[noreturn]] void workUntilKilled(int pipe, unsigned seed) {
    std::unique_ptr<Backend> backend;
    if (!openDatabase(utf8Of(path_), {}, &backend)) _exit(2);
    backend->history()->keep(kPlenty);
    const auto tell = [pipe](int now, int next) {
      const Told told{now, next};
      if (write(pipe, &told, sizeof told) != sizeof told) _exit(3);
    };
    for (int step = 0; step < kSteps; ++step) {
      tell(step, step + 1);
      std::int64_t affected = 0;
      std::unique_ptr<RowSource> rows;
      if (!backend->run("UPDATE t SET n = n + 1", &affected, &rows)) _exit(4);
    }
    std::minstd_rand random(seed);
    for (int now = kSteps;;) {
      const bool goesBack = now == kSteps || (now > 0 && random() % 2 == 0);
      const int next = goesBack ? now - 1 : now + 1;
      tell(now, next);
      if (!backend->history()->take(goesBack ? Way::back : Way::again)) _exit(5);
      now = next;
    }
  }

  /// What the child told last before it was killed.
  Told killAfter(int tellings, std::chrono::microseconds delay) {
    int ends[2];
    EXPECT_EQ(0, pipe(ends));
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      workUntilKilled(ends[1], static_cast<unsigned>(tellings));
    }
    close(ends[1]);
    Told last;
    Told told;
    for (int count = 1; read(ends[0], &told, sizeof told) == sizeof told; ++count) {
      last = told;
      if (count != tellings) continue;
      std::this_thread::sleep_for(delay);
      kill(child, SIGKILL);
    }
    close(ends[0]);
    int state = 0;
    EXPECT_EQ(child, waitpid(child, &state, 0));
    EXPECT_TRUE(WIFSIGNALED(state)) << "exit code " << WEXITSTATUS(state);
    return last;
  }

  /// The file with so many steps in it.
  static std::string contentWith(int steps) {
    return std::to_string(kRows) + "," + std::to_string(kRows * steps) + "," + std::to_string(kRows * steps) +
           ",ok";
  }
  std::string content() {
    OtherProgram other(path_);
    return other.ask("SELECT count(*) || ',' || sum(n) || ',' || (SELECT count(*) FROM log) FROM t") + "," +
           other.ask("PRAGMA integrity_check");
  }
};

TEST_F(HistoryKillTest, TheFileIsAsBeforeAStepOrAsBehindIt) {
  const char* const wanted = std::getenv("QUIVANE_KILLS");
  const int kills = wanted != nullptr ? std::atoi(wanted) : kKills;
  std::minstd_rand random(std::random_device{}());
  int before = 0;
  int behind = 0;
  for (const char* mode : {"DELETE", "WAL"}) {
    for (int n = 0; n < kills; ++n) {
      SCOPED_TRACE(std::string(mode) + " " + std::to_string(n));
      begin(mode);
      const int tellings = kSteps + 1 + static_cast<int>(random() % 8);
      const Told last = killAfter(tellings, std::chrono::microseconds(random() % 3000));
      const std::string found = content();
      before += found == contentWith(last.now) ? 1 : 0;
      behind += found == contentWith(last.next) ? 1 : 0;
      ASSERT_TRUE(found == contentWith(last.now) || found == contentWith(last.next))
          << found << " while " << last.now << " became " << last.next;
    }
  }
  std::printf("%d kills, %d before the step and %d behind it\n", 2 * kills, before, behind);
}

}  // namespace
}  // namespace store
