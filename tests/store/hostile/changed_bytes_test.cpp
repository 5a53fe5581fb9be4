// Five thousand files with one byte that is wrong, a thousand in each test.
#include "tests/store/hostile/damage_fixture.h"

namespace store {
namespace {

class ChangedBytesTest : public DamageTest, public testing::WithParamInterface<unsigned> {};

TEST_P(ChangedBytesTest, AreHarmless) {
  visitChangedBytes(DatabaseImage(bytesOf(path_)), 1000, GetParam(), reading());
  EXPECT_GT(refused_, 10);
  EXPECT_GT(opened_, 600);
}

INSTANTIATE_TEST_SUITE_P(, ChangedBytesTest, testing::Range(1u, 6u));

}  // namespace
}  // namespace store
