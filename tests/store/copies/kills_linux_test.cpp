// A program that is killed while it keeps a former state, or goes back to one, leaves the file and the copies
// whole. Programs are made and killed by the means of Linux.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

class KilledCopiesTest : public CopiesTest, public testing::WithParamInterface<const char*> {
 protected:
  static constexpr int kKills = 40;

  void SetUp() override {
    CopiesTest::SetUp();
    prepare(std::string("PRAGMA journal_mode = ") + GetParam());
    prepare(
        "CREATE TABLE state (n Integer); INSERT INTO state VALUES (0);"
        "CREATE TABLE big (b); INSERT INTO big VALUES (randomblob(1500000))");
  }

  /// Lets the work go on in a program of its own and kills it after that time, wherever it is then. Whether
  /// it was still at it.
  template <typename Work>
  bool killDuring(Work work, Microseconds life) {
    const pid_t child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    // The instant is what is tried here; the child has the processor meanwhile.
    std::this_thread::sleep_for(life);
    kill(child, SIGKILL);
    int state = 0;
    EXPECT_EQ(child, waitpid(child, &state, 0));
    EXPECT_TRUE(WIFSIGNALED(state) || WEXITSTATUS(state) == 0) << WEXITSTATUS(state);
    return WIFSIGNALED(state);
  }

  /// A random time, which the work takes about once where nobody kills: it is slower in a program of its own.
  template <typename Work>
  Microseconds lifeFor(Work work) {
    if (shortest_ == Microseconds::max()) {
      for (int number = 0; number < 3; ++number) {
        const Clock::time_point begin = Clock::now();
        EXPECT_TRUE(work());
        shortest_ = std::min(shortest_, std::chrono::duration_cast<Microseconds>(Clock::now() - begin));
        now_ += kSecond;
      }
    }
    return Microseconds(std::uniform_int_distribution<Microseconds::rep>(0, shortest_.count() * 3)(random_));
  }

  int stateOf(const std::filesystem::path& path) {
    return std::stoi(OtherProgram(path).ask("SELECT n FROM state"));
  }
  static void expectSound(const std::filesystem::path& path) {
    OtherProgram file(path);
    EXPECT_EQ("ok", file.ask("PRAGMA integrity_check")) << path;
    EXPECT_EQ("1500000", file.ask("SELECT length(b) FROM big")) << path;
  }
  void expectAllSound() {
    expectSound(path_);
    for (const KeptCopy& copy : kept()) expectSound(pathOf(copy.path));
  }
  bool isKept(int state) {
    const std::vector<KeptCopy> all = kept();
    return std::any_of(all.begin(), all.end(),
                       [&](const KeptCopy& copy) { return stateOf(pathOf(copy.path)) == state; });
  }

  std::mt19937 random_{20261122};
  Microseconds shortest_ = Microseconds::max();
};

INSTANTIATE_TEST_SUITE_P(Modes, KilledCopiesTest, testing::Values("DELETE", "WAL"));

TEST_P(KilledCopiesTest, WhileTheStateBeforeAChangeIsKept) {
  const auto session = [this] {
    std::unique_ptr<Backend> backend;
    std::int64_t affected = 0;
    std::unique_ptr<RowSource> rows;
    return openDatabase(utf8Of(path_), {.copies = copies_}, &backend) &&
           backend->run("UPDATE state SET n = n + 1", &affected, &rows);
  };
  const auto sessions = [&] {
    while (session()) now_ += 1;
    return false;
  };
  int changes = 0;
  for (int number = 0; number < kKills; ++number) {
    const Microseconds life = lifeFor(session);
    now_ += kHour;
    const int before = stateOf(path_);
    EXPECT_TRUE(killDuring(sessions, life));
    const int after = stateOf(path_);
    ASSERT_GE(after, before);
    changes += after - before;
    // A change that is in the file has its former state kept, however early the program went.
    EXPECT_TRUE(isKept(after - 1)) << number;
    expectAllSound();
    if (HasFailure()) return;
  }
  std::printf("%d kills, %d changes in the file\n", kKills, changes);
  EXPECT_GT(changes, 0);
  // What the killed ones left is thrown away later.
  now_ += kDay;
  ASSERT_TRUE(session());
  expectNothingUnfinished();
}

TEST_P(KilledCopiesTest, WhileACopyIsPutBack) {
  change("UPDATE state SET n = 1");
  ASSERT_EQ(1u, kept().size());
  const std::string former = kept()[0].path;
  const auto goBack = [&] {
    return static_cast<bool>(GoingBack(*copies_, 0, nullptr).putBack(utf8Of(path_), former));
  };
  now_ += kSecond;
  int kills = 0;
  int goneBack = 0;
  for (int number = 2; number < kKills + 2; ++number) {
    now_ += kSecond;
    const Microseconds life = lifeFor(goBack);
    prepare("UPDATE state SET n = " + std::to_string(number));
    kills += killDuring(goBack, life) ? 1 : 0;
    const int after = stateOf(path_);
    ASSERT_TRUE(after == number || after == 0) << after;
    goneBack += after == 0 ? 1 : 0;
    if (after == 0) {
      EXPECT_TRUE(isKept(number)) << "what was there before";
    }
    EXPECT_TRUE(std::filesystem::exists(former));
    expectAllSound();
    if (HasFailure()) return;
  }
  std::printf("%d kills, gone back %d times\n", kills, goneBack);
  EXPECT_GT(kills, kKills / 4);
  EXPECT_GT(goneBack, 0);
}

}  // namespace
}  // namespace store
