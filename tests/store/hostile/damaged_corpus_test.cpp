// Files cut, with pages in wrong places, with links and lengths that lead astray: a few thousand, made by
// rule.
#include "tests/store/hostile/damage_fixture.h"

namespace store {
namespace {

using DamagedCorpusTest = DamageTest;

TEST_F(DamagedCorpusTest, ASoundFileGivesAllAndEveryKindOfPlaceIsInIt) {
  const DatabaseImage image(bytesOf(path_));
  EXPECT_EQ(512u, image.pageSize());
  EXPECT_GT(image.freeTrunks().size(), 1u);
  EXPECT_GT(image.overflowLinks().size(), 20u);
  EXPECT_GT(image.childLinks().size(), 15u);
  EXPECT_GT(image.numbers().size(), 150u);
  EXPECT_GT(walkDatabase(utf8Of(path_), {}), 400);
}

TEST_F(DamagedCorpusTest, CutAtEveryPageItIsRefused) {
  visitTruncations(DatabaseImage(bytesOf(path_)), reading());
  EXPECT_GT(refused_, 100);
  EXPECT_EQ(0, opened_);
}

TEST_F(DamagedCorpusTest, PagesInEachOthersPlaceAreHarmless) {
  visitSwappedPages(DatabaseImage(bytesOf(path_)), reading());
  EXPECT_GT(opened_, 100);
}

TEST_F(DamagedCorpusTest, LoopsInTheTreesAreHarmless) {
  const DatabaseImage image(bytesOf(path_));
  visitLinks(image, image.childLinks(), reading());
  EXPECT_GT(opened_, 100);
}

TEST_F(DamagedCorpusTest, LoopsOfLongContentAreHarmless) {
  const DatabaseImage image(bytesOf(path_));
  visitLinks(image, image.overflowLinks(), reading());
  EXPECT_GT(opened_, 100);
}

TEST_F(DamagedCorpusTest, LoopsOfFreePagesAreHarmlessAlsoToThoseWhoWrite) {
  const DatabaseImage image(bytesOf(path_));
  visitLinks(image, image.freeTrunks(), writing());
  visitFreeCounts(image, writing());
  EXPECT_GT(opened_, 10);
}

TEST_F(DamagedCorpusTest, HugeNumbersAreHarmless) {
  visitHugeNumbers(DatabaseImage(bytesOf(path_)), reading());
  EXPECT_GT(opened_, 500);
}

}  // namespace
}  // namespace store
