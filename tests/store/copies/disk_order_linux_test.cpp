// What is on the disk before what, so that the loss of power leaves the file whole and a copy of what it was.
#include "tests/store/copies/copies_fixture.h"
#include "tests/store/copies/disk_log_linux.h"

namespace store {
namespace {

class DiskOrderTest : public CopiesTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    CopiesTest::SetUp();
    prepare(std::string("PRAGMA journal_mode = ") + GetParam());
    change("UPDATE t SET b = 'later'");
    ASSERT_EQ(1u, kept().size());
    copy_ = pathOfCopy(0);
    now_ += kHour;
  }
  bool isWriteAhead() const { return std::string(GetParam()) == "WAL"; }
  /// What receives the changes first.
  std::string written() const { return utf8Of(path_) + (isWriteAhead() ? "-wal" : ""); }

  using Entries = std::vector<std::string>;
  static constexpr std::size_t kNever = std::string::npos;
  static std::size_t firstOf(const Entries& entries, const std::string& entry) {
    const auto found = std::find(entries.begin(), entries.end(), entry);
    return found == entries.end() ? kNever : static_cast<std::size_t>(found - entries.begin());
  }
  static std::size_t lastOf(const Entries& entries, const std::string& entry) {
    const auto found = std::find(entries.rbegin(), entries.rend(), entry);
    return found == entries.rend() ? kNever : static_cast<std::size_t>(entries.rend() - found) - 1;
  }
  /// The name under which a copy is brought to the disk, before it gets the one that counts its records.
  static std::string uncounted(const KeptCopy& copy) {
    CopyName name = copy.name;
    name.records.reset();
    return utf8Of(std::filesystem::path(pathOf(copy.path)).parent_path() / store::textOf(name));
  }
  /// That the copy, and its name in its folder, are on the disk before an entry.
  void expectOnTheDiskBefore(const Entries& entries, const KeptCopy& copy, std::size_t entry) {
    const std::size_t flushed = firstOf(entries, "flush " + uncounted(copy));
    const std::string folder = utf8Of(copy_.parent_path()) + "/";
    ASSERT_NE(kNever, flushed);
    EXPECT_LT(flushed, entry);
    const auto named =
        std::find(entries.begin() + static_cast<std::ptrdiff_t>(flushed), entries.end(), "flush " + folder);
    ASSERT_NE(entries.end(), named);
    EXPECT_LT(static_cast<std::size_t>(named - entries.begin()), entry);
  }

  std::filesystem::path copy_;
};

INSTANTIATE_TEST_SUITE_P(, DiskOrderTest, testing::Values("DELETE", "WAL"),
                         [](const testing::TestParamInfo<const char*>& mode) { return mode.param; });

TEST_P(DiskOrderTest, ThePresentStateIsThereBeforeAnythingOfTheFormerOneIsPutBack) {
  const DiskLog disk;
  ASSERT_TRUE(putBack(copy_));
  const Entries entries = disk.entries();
  const std::size_t first = firstOf(entries, "write " + written());
  ASSERT_NE(kNever, first) << testing::PrintToString(entries);
  expectOnTheDiskBefore(entries, kept()[0], first);
}

TEST_P(DiskOrderTest, WhatWasPutBackIsThereWhenItIsSaid) {
  const DiskLog disk;
  ASSERT_TRUE(putBack(copy_));
  const Entries entries = disk.entries();
  for (const std::string& file : {written(), utf8Of(path_)}) {
    const std::size_t last = lastOf(entries, "write " + file);
    ASSERT_NE(kNever, last) << file;
    EXPECT_GT(lastOf(entries, "flush " + file), last) << file;
    EXPECT_NE(kNever, lastOf(entries, "flush " + file)) << file;
  }
}

TEST_P(DiskOrderTest, TheJournalIsEmptiedBeforeItIsDeletedBecauseOnlyThatCanBeFlushed) {
  if (isWriteAhead()) GTEST_SKIP() << "there is none";
  const DiskLog disk;
  ASSERT_TRUE(putBack(copy_));
  const Entries entries = disk.entries();
  const std::string journal = utf8Of(path_) + "-journal";
  const std::size_t emptied = firstOf(entries, "cut " + journal);
  ASSERT_NE(kNever, emptied);
  EXPECT_GT(emptied, lastOf(entries, "write " + utf8Of(path_)));
  const std::size_t removed = firstOf(entries, "remove " + journal);
  ASSERT_NE(kNever, removed);
  EXPECT_GT(removed, emptied);
}

TEST_P(DiskOrderTest, AFileThatIsMadeAnewIsThereBeforeItHasTheName) {
  std::filesystem::remove(path_);
  const DiskLog disk;
  ASSERT_TRUE(putBack(copy_));
  const Entries entries = disk.entries();
  const std::size_t unfinished = lastOf(entries, "flush " + utf8Of(path_) + "~0");
  ASSERT_NE(kNever, unfinished);
  EXPECT_GT(unfinished, lastOf(entries, "write " + utf8Of(path_) + "~0"));
  const std::size_t named = lastOf(entries, "flush " + utf8Of(path_));
  ASSERT_NE(kNever, named);
  EXPECT_GT(named, unfinished);
  EXPECT_NE(kNever, lastOf(entries, "flush " + utf8Of(path_.parent_path()) + "/"));
}

TEST_P(DiskOrderTest, ATableComesBackOnlyOnceThePresentStateIsThere) {
  prepare("DROP TABLE t; CREATE TABLE other (x)");
  const DiskLog disk;
  ASSERT_TRUE(GoingBack(*copies_, 0, nullptr).putTableBack(utf8Of(path_), utf8Of(copy_), "t"));
  const Entries entries = disk.entries();
  const std::size_t first = firstOf(entries, "write " + written());
  ASSERT_NE(kNever, first) << testing::PrintToString(entries);
  expectOnTheDiskBefore(entries, kept()[0], first);
}

TEST_P(DiskOrderTest, ADatabaseThatIsToBeDeletedIsThereAsACopy) {
  const DiskLog disk;
  ASSERT_TRUE(GoingBack(*copies_, 0, nullptr).keepBeforeDeletion(utf8Of(path_)));
  expectOnTheDiskBefore(disk.entries(), kept()[0], disk.entries().size());
}

TEST_P(DiskOrderTest, OlderCopiesGoOnlyOnceTheNewOneIsThere) {
  for (int number = 0; number < 4; ++number) {
    now_ += kSecond;
    change("INSERT INTO t VALUES (9, 'x')");
  }
  ASSERT_EQ(5u, kept().size());
  now_ += kSecond;
  const std::string oldest = kept().back().path;
  const DiskLog disk;
  change("INSERT INTO t VALUES (9, 'x')");
  const Entries entries = disk.entries();
  const std::size_t removed = firstOf(entries, "remove " + oldest);
  ASSERT_NE(kNever, removed) << testing::PrintToString(entries);
  expectOnTheDiskBefore(entries, kept()[0], removed);
}

}  // namespace
}  // namespace store
