// The folder of the copies: what it says of itself, and how much room it takes.
#include "platform/store/sqlite/copies/database_key.h"
#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/copies/upkeep.h"
#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

class CopyFolderTest : public CopiesTest {
 protected:
  /// A copy of so many bytes, as if it had been made now.
  std::string keepOne(const std::string& database, std::int64_t bytes,
                      CopyReason reason = CopyReason::change) {
    std::string unfinished;
    std::int64_t time = 0;
    const Status begun = copies_->begin(database, bytes, &unfinished, &time);
    EXPECT_TRUE(begun) << begun.message();
    std::ofstream(pathOf(unfinished), std::ios::binary) << std::string(static_cast<std::size_t>(bytes), 'x');
    std::string kept;
    EXPECT_TRUE(copies_->finish(unfinished, {.time = time, .reason = reason}, &kept));
    return kept;
  }
  std::size_t countOf(const std::string& database) { return copies_->copiesOf(database).size(); }
  std::string fileCalled(const char* name) { return utf8Of(folder_.file(name)); }
};

TEST_F(CopyFolderTest, HasNothingAtFirstAndMakesNothing) {
  EXPECT_TRUE(copies_->databases().empty());
  EXPECT_TRUE(kept().empty());
  EXPECT_FALSE(std::filesystem::exists(copiesPath()));
}

TEST_F(CopyFolderTest, TellsTheCopiesOfEachDatabaseNewestFirst) {
  const std::string one = fileCalled("one.cdb");
  const std::string other = fileCalled("other.cdb");
  const std::string first = keepOne(one, 10);
  now_ += kHour;
  const std::string second = keepOne(one, 20);
  now_ += kHour;
  const std::string third = keepOne(other, 30, CopyReason::tableDeletion);

  const std::vector<KeptCopy> copies = copies_->copiesOf(one);
  ASSERT_EQ(2u, copies.size());
  EXPECT_EQ(second, copies[0].path);
  EXPECT_EQ(20, copies[0].bytes);
  EXPECT_EQ(now_ - kHour, copies[0].name.time);
  EXPECT_EQ(first, copies[1].path);
  EXPECT_EQ((std::vector<std::string>{databaseKeyOf(other), databaseKeyOf(one)}), copies_->databases());
  EXPECT_TRUE(copies_->isCopy(third));
  EXPECT_FALSE(copies_->isCopy(one));
}

TEST_F(CopyFolderTest, ACopyThatSomebodyHasCarriedElsewhereIsAFileLikeAnyOther) {
  const std::filesystem::path copy = pathOf(keepOne(fileCalled("data.cdb"), 10));
  const std::filesystem::path carried = folder_.file("elsewhere") / "deeper" / copy.filename();
  std::filesystem::create_directories(carried.parent_path());
  std::filesystem::copy_file(copy, carried);
  EXPECT_TRUE(copies_->isCopy(utf8Of(copy)));
  EXPECT_FALSE(copies_->isCopy(utf8Of(carried)));
  writeBytes(copy.parent_path() / "own.cdb", "mine");
  EXPECT_FALSE(copies_->isCopy(utf8Of(copy.parent_path() / "own.cdb"))) << "nor is whatever lies beside one";
}

TEST_F(CopyFolderTest, ANameIsNotTakenFromACopyThatHasIt) {
  const std::string database = fileCalled("data.cdb");
  std::string unfinished;
  std::int64_t time = 0;
  ASSERT_TRUE(copies_->begin(database, 3, &unfinished, &time));
  writeBytes(pathOf(unfinished), "new");
  const CopyName name{.time = time};
  const std::filesystem::path other = pathOf(unfinished).parent_path() / store::textOf(name);
  writeBytes(other, "other");
  std::string kept = "as it was";
  EXPECT_EQ(ErrorCode::inputOutput, copies_->finish(unfinished, name, &kept).code());
  EXPECT_EQ("as it was", kept);
  EXPECT_EQ("other", bytesOf(other));
  EXPECT_EQ("new", bytesOf(pathOf(unfinished)));
}

TEST_F(CopyFolderTest, FilesOfTheSameNameInOtherFoldersAreOtherDatabases) {
  std::filesystem::create_directory(folder_.file("beside"));
  keepOne(fileCalled("data.cdb"), 10);
  keepOne(utf8Of(folder_.file("beside") / "data.cdb"), 10);
  EXPECT_EQ(2u, copies_->databases().size());
  EXPECT_EQ(1u, countOf(fileCalled("data.cdb")));
}

TEST_F(CopyFolderTest, ADatabaseIsKnownByWhateverPathLeadsToIt) {
  keepOne(fileCalled("data.cdb"), 10);
  if (std::filesystem::path::preferred_separator == '/') {
    std::filesystem::create_symlink(folder_.path(), folder_.file("link"));
    EXPECT_EQ(1u, countOf(utf8Of(folder_.file("link") / "data.cdb")));
    EXPECT_EQ(1u, countOf(utf8Of(folder_.file("link") / ".." / folder_.path().filename() / "data.cdb")));
    EXPECT_EQ(0u, countOf(fileCalled("DATA.cdb")));
  } else {
    EXPECT_EQ(1u, countOf(fileCalled("DATA.CDB")));
  }
}

TEST_F(CopyFolderTest, WhatLiesBesideItMovesTogetherWithIt) {
  const std::filesystem::path stick = folder_.file("stick");
  std::filesystem::create_directories(stick / "data");
  const auto copiesOn = [this](const std::filesystem::path& place) {
    CopySettings moved = settings();
    moved.folder = utf8Of(place / "copies");
    return std::make_shared<CopyFolder>(moved);
  };
  copies_ = copiesOn(stick);
  keepOne(utf8Of(stick / "beside.cdb"), 10);
  keepOne(utf8Of(stick / "data" / "below.cdb"), 20);
  keepOne(fileCalled("stick.cdb"), 30);
  const std::filesystem::path other = folder_.file("another stick");
  std::filesystem::rename(stick, other);
  copies_ = copiesOn(other);
  EXPECT_EQ(1u, countOf(utf8Of(other / "beside.cdb")));
  EXPECT_EQ(1u, countOf(utf8Of(other / "data" / "below.cdb")));
  EXPECT_EQ(0u, countOf(utf8Of(stick / "beside.cdb")));
  EXPECT_EQ(1u, countOf(fileCalled("stick.cdb"))) << "what lies elsewhere is known by its full path";
  std::vector<std::string> found = copies_->databases();
  std::sort(found.begin(), found.end());
  std::vector<std::string> wanted = {databaseKeyOf(utf8Of(other / "beside.cdb")),
                                     databaseKeyOf(utf8Of(other / "data" / "below.cdb")),
                                     databaseKeyOf(fileCalled("stick.cdb"))};
  std::sort(wanted.begin(), wanted.end());
  EXPECT_EQ(wanted, found);
}

TEST_F(CopyFolderTest, ANameTellsPeopleWhoseFolderItIs) {
  EXPECT_TRUE(folderNameOf("/home/user/my library.cdb").starts_with("my_library-"));
  EXPECT_EQ(folderNameOf("/a.cdb").size(), std::string("a-").size() + 16);
  EXPECT_EQ(folderNameOf("/" + std::string(300, 'n')).size(), 40u + 1 + 16);
  EXPECT_NE(folderNameOf("/a/x.cdb"), folderNameOf("/b/x.cdb"));
}

TEST_F(CopyFolderTest, TwoCopiesOfOneMillisecondAreTwo) {
  const std::string database = fileCalled("data.cdb");
  std::string first;
  std::string second;
  std::int64_t firstTime = 0;
  std::int64_t secondTime = 0;
  ASSERT_TRUE(copies_->begin(database, 1, &first, &firstTime));
  ASSERT_TRUE(copies_->begin(database, 1, &second, &secondTime));
  EXPECT_NE(first, second);
  EXPECT_EQ(firstTime + 1, secondTime);
  std::string kept;
  ASSERT_TRUE(copies_->finish(first, {.time = firstTime}, &kept));
  std::string third;
  std::int64_t thirdTime = 0;
  ASSERT_TRUE(copies_->begin(database, 1, &third, &thirdTime)) << "the first one has its name already";
  EXPECT_EQ(secondTime + 1, thirdTime);
}

TEST_F(CopyFolderTest, WhatIsNoCopyIsLeftAlone) {
  const std::string database = fileCalled("data.cdb");
  const std::filesystem::path own = std::filesystem::path(pathOf(keepOne(database, 10))).parent_path();
  writeBytes(own / "notes.txt", "mine");
  writeBytes(own / "2026-11-21 my own.cdb", "mine");
  std::filesystem::create_directory(copiesPath() / "a folder");
  writeBytes(copiesPath() / "a folder" / "Path.txt", "/not/its/path.cdb");
  for (int number = 0; number < 9; ++number) {
    now_ += kSecond;
    keepOne(database, 10);
    copies_->prune(database, {});
  }
  EXPECT_EQ(5u, countOf(database));
  EXPECT_EQ("mine", bytesOf(own / "notes.txt"));
  EXPECT_EQ("mine", bytesOf(own / "2026-11-21 my own.cdb"));
  EXPECT_EQ(1u, copies_->databases().size());
}

TEST_F(CopyFolderTest, ALabelThatSomebodyHasSpoiledIsMadeAnewWithTheNextCopy) {
  const std::string database = fileCalled("data.cdb");
  const std::filesystem::path own = std::filesystem::path(pathOf(keepOne(database, 10))).parent_path();
  writeBytes(own / "Path.txt", "nonsense");
  EXPECT_TRUE(copies_->databases().empty());
  EXPECT_EQ(1u, countOf(database)) << "who knows the path still finds them";
  now_ += kSecond;
  keepOne(database, 10);
  EXPECT_EQ(1u, copies_->databases().size());
}

// ---- Room

TEST_F(CopyFolderTest, AllTogetherTakeATenthOfWhatWouldBeFreeWithoutThem) {
  const std::string database = fileCalled("data.cdb");
  free_ = 10'000;
  std::string unfinished;
  std::int64_t time = 0;
  EXPECT_EQ(ErrorCode::tooLarge, copies_->begin(database, 1'001, &unfinished, &time).code());
  EXPECT_FALSE(std::filesystem::exists(copiesPath())) << "nothing is made for it";
  keepOne(database, 1'000);
  // What it takes is not free any more.
  free_ = 9'000;
  EXPECT_EQ(ErrorCode::tooLarge, copies_->begin(database, 1'001, &unfinished, &time).code());
  now_ += kSecond;
  const std::string second = keepOne(database, 1'000);
  free_ = 8'000;
  copies_->prune(database, {second});
  ASSERT_EQ(1u, countOf(database));
  EXPECT_EQ(second, copies_->copiesOf(database)[0].path);
}

TEST_F(CopyFolderTest, NeverMoreThanTwoGigabytes) {
  free_ = std::int64_t{1} << 50;
  const std::string database = fileCalled("data.cdb");
  std::string unfinished;
  std::int64_t time = 0;
  EXPECT_TRUE(copies_->begin(database, std::int64_t{2} << 30, &unfinished, &time));
  EXPECT_EQ(ErrorCode::tooLarge,
            copies_->begin(database, (std::int64_t{2} << 30) + 1, &unfinished, &time).code());
  free_.reset();
  EXPECT_TRUE(copies_->begin(database, std::int64_t{2} << 30, &unfinished, &time))
      << "where the system doesn't tell";
  EXPECT_EQ(ErrorCode::tooLarge,
            copies_->begin(database, (std::int64_t{2} << 30) + 1, &unfinished, &time).code());
}

TEST_F(CopyFolderTest, ForRoomTheOldestGoAndTheLastOneOfADatabaseAtTheEnd) {
  const std::string rare = fileCalled("rare.cdb");
  const std::string busy = fileCalled("busy.cdb");
  const std::string onlyOne = keepOne(rare, 100);
  std::vector<std::string> ofBusy;
  for (int number = 0; number < 4; ++number) {
    now_ += kHour;
    ofBusy.push_back(keepOne(busy, 100));
  }
  const auto pruneTo = [&](std::int64_t bytes) {
    std::int64_t taken = 0;
    for (const std::string& database : {rare, busy}) {
      for (const KeptCopy& copy : copies_->copiesOf(database)) taken += copy.bytes;
    }
    free_ = bytes * 10 - taken;
    copies_->prune(busy, {ofBusy.back()});
  };
  pruneTo(500);
  EXPECT_EQ(4u, countOf(busy));
  pruneTo(499);
  EXPECT_EQ(3u, countOf(busy));
  EXPECT_FALSE(std::filesystem::exists(pathOf(ofBusy[0])));
  pruneTo(200);
  EXPECT_EQ(1u, countOf(busy));
  EXPECT_EQ(1u, countOf(rare));
  pruneTo(199);
  EXPECT_EQ(1u, countOf(busy)) << "what was just kept is spared";
  EXPECT_EQ(0u, countOf(rare));
  pruneTo(10);
  EXPECT_EQ(1u, countOf(busy));
}

TEST_F(CopyFolderTest, CopiesMarkedAsNotToBeWrittenCanGo) {
  const std::string database = fileCalled("data.cdb");
  for (int number = 0; number < 7; ++number) {
    now_ += kSecond;
    const std::string copy = keepOne(database, 10);
    std::filesystem::permissions(pathOf(copy), std::filesystem::perms::owner_read);
  }
  copies_->prune(database, {});
  EXPECT_EQ(5u, countOf(database));
}

TEST_F(CopyFolderTest, ThatAFileIsTooLargeIsNewsOnceUntilOneWasKept) {
  const std::string database = fileCalled("data.cdb");
  EXPECT_TRUE(copies_->isFirstTooLarge(database));
  EXPECT_FALSE(copies_->isFirstTooLarge(database));
  EXPECT_TRUE(copies_->isFirstTooLarge(fileCalled("other.cdb")));
  keepOne(database, 10);
  copies_->prune(database, {});
  EXPECT_TRUE(copies_->isFirstTooLarge(database));
}

TEST_F(CopyFolderTest, WhatWasLeftUnfinishedGoesAfterAnHour) {
  const std::string database = fileCalled("data.cdb");
  std::string unfinished;
  std::int64_t time = 0;
  ASSERT_TRUE(copies_->begin(database, 1, &unfinished, &time));
  writeBytes(pathOf(unfinished + "-wal"), "half");
  now_ += kHour;
  copies_->prune(database, {});
  EXPECT_TRUE(std::filesystem::exists(pathOf(unfinished))) << "another program may be at it";
  now_ += 1;
  copies_->prune(database, {});
  EXPECT_FALSE(std::filesystem::exists(pathOf(unfinished)));
  EXPECT_FALSE(std::filesystem::exists(pathOf(unfinished + "-wal")));
}

TEST_F(CopyFolderTest, CountingCanBeBrokenOff) {
  prepare("CREATE TABLE second (a); INSERT INTO second VALUES (1), (2); CREATE TABLE third (a)");
  const std::string path = utf8Of(path_);
  EXPECT_EQ(5, countRecords(path, nullptr));
  for (int number = 1; number <= 3; ++number) {
    int asked = 0;
    EXPECT_EQ(std::nullopt, countRecords(path, [&] { return ++asked == number; })) << number;
    EXPECT_EQ(number, asked);
  }
  EXPECT_EQ(5, countRecords(path, [] { return false; }));
}

TEST_F(CopyFolderTest, CountingCanBeBrokenOffInTheMidstOfATable) {
  constexpr int kMany = 100'000;
  prepare(
      "CREATE TABLE large (a INTEGER PRIMARY KEY, b);"
      "CREATE TABLE keyed (a PRIMARY KEY) WITHOUT ROWID;"
      "INSERT INTO large WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT " +
      std::to_string(kMany) + ") SELECT i, NULL FROM n; INSERT INTO keyed SELECT a FROM large");
  const std::string path = utf8Of(path_);
  const std::int64_t all = countRecords(path, nullptr).value_or(-1);
  EXPECT_GE(all, 2 * kMany);
  int asked = 0;
  EXPECT_EQ(all, countRecords(path, [&] { return ++asked == 0; }));
  EXPECT_GE(asked, 2 * kMany / 10'000);
  const int whole = asked;
  for (int number = 1; number <= whole; ++number) {
    asked = 0;
    EXPECT_EQ(std::nullopt, countRecords(path, [&] { return ++asked == number; })) << number;
    EXPECT_EQ(number, asked) << "nothing goes on behind the answer";
  }
}

TEST_F(CopyFolderTest, AFileInThePlaceOfTheFolderIsTold) {
  writeBytes(copiesPath(), "in the way");
  std::string unfinished;
  std::int64_t time = 0;
  EXPECT_EQ(ErrorCode::cannotOpen, copies_->begin(fileCalled("data.cdb"), 1, &unfinished, &time).code());
  EXPECT_EQ("in the way", bytesOf(copiesPath()));
}

TEST_F(CopyFolderTest, TheSystemTellsClockAndRoomItself) {
  CopyFolder own({.folder = utf8Of(copiesPath())});
  std::string unfinished;
  std::int64_t time = 0;
  ASSERT_TRUE(own.begin(fileCalled("data.cdb"), 1, &unfinished, &time));
  EXPECT_NEAR(static_cast<double>(std::time(nullptr)), static_cast<double>(time) / 1000, 60.0);
}

}  // namespace
}  // namespace store
