// What can go wrong with the system's files while a state is kept or put back: a full disk, folders that
// can't be written, a file that somebody takes away or replaces.
#include <cerrno>
#include <cstring>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/store/copies/copies_fixture.h"
#include "tests/store/faults/small_disk_linux.h"

namespace store {
namespace {

namespace fs = std::filesystem;

class CopyMishapsTest : public CopiesTest, public testing::WithParamInterface<const char*> {
 protected:
  /// The file and the folder of its copies may lie where they can't be written.
  void SetUp() override {
    fs::create_directory(place_);
    path_ = place_ / "data.cdb";
    CopiesTest::SetUp();
    prepare(std::string("PRAGMA journal_mode = ") + GetParam());
    prepare("INSERT INTO t VALUES (9, zeroblob(400000))");
    former_ = contentOf(path_);
    change("UPDATE t SET b = 'later' WHERE a < 9; ");
    prepare("DELETE FROM t WHERE a = 9; VACUUM");
    present_ = contentOf(path_);
    ASSERT_EQ(1u, kept().size());
    copy_ = pathOfCopy(0);
    now_ += kHour;
  }

  bool isWriteAhead() const { return std::string(GetParam()) == "WAL"; }
  void expectUnchanged(std::size_t copies = 1) {
    EXPECT_EQ(present_, contentOf(path_));
    EXPECT_EQ(copies, kept().size());
    EXPECT_EQ(former_, contentOf(copy_));
    expectNothingUnfinished();
    expectNothingBeside();
  }
  /// But for what the permissions of the folders forbid.
  void letEverybodyWrite() const {
    fs::permissions(folder_.path(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
      if (entry.path() != copy_) fs::permissions(entry.path(), fs::perms::all);
    }
  }
  /// Nothing that a later opening would take for the file's.
  void expectNothingBeside() {
    for (const auto& entry : fs::directory_iterator(place_)) {
      const std::string name = utf8Of(entry.path().filename());
      EXPECT_TRUE(name == "data.cdb" || name == "away.cdb") << name;
    }
  }

  const fs::path place_ = folder_.file("place");
  std::string former_;
  std::string present_;
  fs::path copy_;
};

INSTANTIATE_TEST_SUITE_P(, CopyMishapsTest, testing::Values("DELETE", "WAL"),
                         [](const testing::TestParamInfo<const char*>& mode) { return mode.param; });

// ---- A full disk

/// A file system of one megabyte in the place of a folder, with what was in it.
class SmallDisk {
 public:
  explicit SmallDisk(const fs::path& folder) : folder_(folder) {
    const fs::path aside = fs::path(folder) += " aside";
    fs::rename(folder, aside);
    fs::create_directory(folder);
    isMounted_ = mountSmallDisk(folder, 1);
    fs::copy(aside, folder, fs::copy_options::recursive);
  }
  ~SmallDisk() {
    if (!isMounted_) return;
    EXPECT_TRUE(removeSmallDisk(folder_)) << "a file on it was left open";
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool isMounted() const { return isMounted_; }
  /// Leaves so many bytes.
  void fill(std::uintmax_t left) const {
    const std::uintmax_t free = fs::space(folder_).available;
    std::ofstream(folder_ / "filler", std::ios::binary)
        << std::string(static_cast<std::size_t>(free > left ? free - left : 0), 'f');
  }
  void empty() const { fs::remove(folder_ / "filler"); }

 private:
  const fs::path folder_;
  bool isMounted_ = false;
};

TEST_P(CopyMishapsTest, OnAFullDiskForTheCopiesAChangeIsMadeAndThatItWasNotKeptIsSaid) {
  const SmallDisk disk(copiesPath());
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  disk.fill(5000);
  openKeeping();
  run("INSERT INTO t VALUES (5, 'five')");
  EXPECT_EQ(ErrorCode::inputOutput, backend_->formerStates()->takeFailure().code());
  close();
  EXPECT_EQ("4", inFile("SELECT count(*) FROM t"));
  disk.empty();
  EXPECT_EQ(1u, kept().size());
  expectNothingUnfinished();
}

TEST_P(CopyMishapsTest, OnAFullDiskForTheCopiesNothingIsPutBackOrDeleted) {
  const SmallDisk disk(copiesPath());
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  disk.fill(5000);
  EXPECT_EQ(ErrorCode::inputOutput, putBack(copy_).code());
  EXPECT_EQ(ErrorCode::inputOutput, GoingBack(*copies_, 0, nullptr).keepBeforeDeletion(utf8Of(path_)).code());
  disk.empty();
  expectUnchanged();
  EXPECT_TRUE(putBack(copy_)) << "as soon as there is room it can be";
  EXPECT_EQ(former_, contentOf(path_));
}

TEST_P(CopyMishapsTest, OnAFullDiskForTheFileItStaysAsItWas) {
  const SmallDisk disk(place_);
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  disk.fill(200'000);
  const Status status = putBack(copy_);
  EXPECT_EQ(ErrorCode::inputOutput, status.code()) << status.message();
  disk.empty();
  expectUnchanged();
  EXPECT_TRUE(putBack(copy_)) << "as soon as there is room it can be";
  EXPECT_EQ(former_, contentOf(path_));
}

TEST_P(CopyMishapsTest, OnAFullDiskAFileThatIsGoneIsNotMadeByHalves) {
  const SmallDisk disk(place_);
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  fs::remove(path_);
  disk.fill(200'000);
  EXPECT_EQ(ErrorCode::inputOutput, putBack(copy_).code());
  EXPECT_FALSE(fs::exists(path_));
  disk.empty();
  expectNothingBeside();
  EXPECT_TRUE(putBack(copy_));
  EXPECT_EQ(former_, contentOf(path_));
}

TEST_P(CopyMishapsTest, OnADiskThatIsFullForTheLogNothingIsLeftOfTheCopy) {
  if (!isWriteAhead()) GTEST_SKIP() << "there is no log";
  OtherProgram other(path_);
  other.run("PRAGMA wal_autocheckpoint = 0; INSERT INTO t VALUES (7, zeroblob(300000))");
  const SmallDisk disk(copiesPath());
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  disk.fill(fs::file_size(path_) + 100'000);
  const std::uintmax_t free = fs::space(copiesPath()).available;
  openKeeping();
  run("INSERT INTO t VALUES (5, 'five')");
  EXPECT_EQ(ErrorCode::inputOutput, backend_->formerStates()->takeFailure().code());
  close();
  EXPECT_EQ(free, fs::space(copiesPath()).available);
}

TEST_P(CopyMishapsTest, TheRoomIsThatOfTheDiskOnWhichTheFolderWillBe) {
  const SmallDisk disk(place_);
  if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here: " << std::strerror(errno);
  CopyFolder there({.folder = utf8Of(place_ / "not yet" / "there")});
  std::string unfinished;
  std::int64_t time = 0;
  EXPECT_EQ(ErrorCode::tooLarge, there.begin(utf8Of(path_), 150'000, &unfinished, &time).code());
  EXPECT_TRUE(there.begin(utf8Of(path_), 50'000, &unfinished, &time));
}

// ---- Folders that can't be written

/// Whoever may write everywhere is nobody as long as it lives.
class NobodysFolder {
 public:
  explicit NobodysFolder(const fs::path& folder) : folder_(folder) {
    EXPECT_EQ(0, chmod(folder.c_str(), 0555));
    if (isMighty_) {
      EXPECT_EQ(0, seteuid(kNobody));
    }
  }
  ~NobodysFolder() {
    if (isMighty_) {
      EXPECT_EQ(0, seteuid(0));
    }
    EXPECT_EQ(0, chmod(folder_.c_str(), 0777));
  }
  NobodysFolder(const NobodysFolder&) = delete;
  NobodysFolder& operator=(const NobodysFolder&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  const bool isMighty_ = geteuid() == 0;
  const fs::path folder_;
};

TEST_P(CopyMishapsTest, InAFolderThatCanNotBeWrittenNothingIsPutBack) {
  letEverybodyWrite();
  {
    const NobodysFolder nobodys(place_);
    const Status status = putBack(copy_);
    EXPECT_FALSE(status);
    EXPECT_NE("", status.message());
  }
  expectUnchanged();
}

TEST_P(CopyMishapsTest, WithoutAFolderThatCanBeWrittenNothingIsKeptAndNothingPutBack) {
  letEverybodyWrite();
  {
    const NobodysFolder nobodys(copy_.parent_path());
    const Status status = putBack(copy_);
    EXPECT_EQ(ErrorCode::cannotOpen, status.code()) << status.message();
    openKeeping();
    run("INSERT INTO t VALUES (5, 'five')");
    EXPECT_EQ(ErrorCode::cannotOpen, backend_->formerStates()->takeFailure().code());
    close();
  }
  prepare("DELETE FROM t WHERE a = 5");
  expectUnchanged();
}

// ---- A file that somebody takes away or replaces meanwhile

/// A question of a putting back during which something happens, once.
class Happening {
 public:
  Happening(int number, std::function<void()> work) : number_(number), work_(std::move(work)) {}
  bool operator()(Busy) {
    if (asked_++ == number_) work_();
    return false;
  }
  bool hasBeen() const { return asked_ > number_; }

 private:
  int number_;
  int asked_ = 0;
  std::function<void()> work_;
};

TEST_P(CopyMishapsTest, AFileThatIsTakenAwayMeanwhileIsNotSaidToBePutBack) {
  const std::string bytes = bytesOf(path_);
  const fs::path away = place_ / "away.cdb";
  int refused = 0;
  for (int number = 0;; ++number) {
    SCOPED_TRACE(number);
    Happening taking(number, [&] { fs::rename(path_, away); });
    const Status status = putBack(copy_, std::ref(taking));
    if (!taking.hasBeen()) break;
    const bool isThere = fs::exists(path_);
    EXPECT_EQ(static_cast<bool>(status), isThere && former_ == contentOf(path_)) << status.message();
    EXPECT_TRUE(present_ == contentOf(away));
    refused += status ? 0 : 1;
    for (const auto& entry : fs::directory_iterator(place_)) fs::remove(entry.path());
    writeBytes(path_, bytes);
    now_ += kSecond;
    if (HasFailure()) return;
  }
  EXPECT_GE(refused, 2) << "while the present state is kept and among the pages";
}

TEST_P(CopyMishapsTest, AFileThatIsReplacedMeanwhileIsLeftAlone) {
  const std::string bytes = bytesOf(path_);
  const fs::path other = place_ / "away.cdb";
  int refused = 0;
  for (int number = 0;; ++number) {
    SCOPED_TRACE(number);
    OtherProgram(other).run("CREATE TABLE mine (x); INSERT INTO mine VALUES ('of another program')");
    const std::string others = contentOf(other);
    Happening replacing(number, [&] { fs::rename(other, path_); });
    const std::size_t before = kept().size();
    const Status status = putBack(copy_, std::ref(replacing));
    if (!replacing.hasBeen()) break;
    if (status) {
      EXPECT_TRUE(former_ == contentOf(path_));
      EXPECT_TRUE(others == contentOf(pathOfCopy(0))) << "what was in its place is a copy";
    } else {
      EXPECT_TRUE(others == contentOf(path_)) << status.message();
      EXPECT_EQ(before + 1, kept().size());
      EXPECT_TRUE(present_ == contentOf(pathOfCopy(0))) << "nowhere else is what was in the file";
      ++refused;
    }
    for (const auto& entry : fs::directory_iterator(place_)) fs::remove(entry.path());
    writeBytes(path_, bytes);
    now_ += kSecond;
    if (HasFailure()) return;
  }
  EXPECT_GE(refused, 2) << "while the present state is kept and among the pages";
}

TEST_P(CopyMishapsTest, AFileThatAppearsInThePlaceOfOneThatIsGoneIsLeftAlone) {
  const fs::path other = place_ / "away.cdb";
  int refused = 0;
  for (int number = 0;; ++number) {
    SCOPED_TRACE(number);
    for (const auto& entry : fs::directory_iterator(place_)) fs::remove(entry.path());
    OtherProgram(other).run("CREATE TABLE mine (x); INSERT INTO mine VALUES ('of another program')");
    const std::string others = contentOf(other);
    Happening appearing(number, [&] {
      fs::rename(other, path_);
      writeBytes(utf8Of(path_) + "-journal", "of another program");
    });
    const Status status = putBack(copy_, std::ref(appearing));
    if (!appearing.hasBeen()) break;
    if (!status) {
      EXPECT_EQ(ErrorCode::fileExists, status.code()) << status.message();
      EXPECT_EQ("of another program", bytesOf(utf8Of(path_) + "-journal"));
      EXPECT_TRUE(others == contentOf(path_));
      EXPECT_FALSE(fs::exists(utf8Of(path_) + "~0"));
      ++refused;
    } else {
      EXPECT_TRUE(former_ == contentOf(path_));
    }
    now_ += kSecond;
    if (HasFailure()) return;
  }
  EXPECT_GE(refused, 1);
}

TEST_P(CopyMishapsTest, WhatIsNoFileIsNotWaitedForAndNotReplaced) {
  fs::remove(path_);
  ASSERT_EQ(0, mkfifo(path_.c_str(), 0666));
  EXPECT_EQ(ErrorCode::cannotOpen, putBack(copy_).code());
  EXPECT_EQ(ErrorCode::cannotOpen, GoingBack(*copies_, 0, nullptr).keepBeforeDeletion(utf8Of(path_)).code());
  EXPECT_TRUE(fs::is_fifo(path_));
}

}  // namespace
}  // namespace store
