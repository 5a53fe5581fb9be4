// What the names of copies say.
#include "platform/store/sqlite/copies/copy_name.h"

#include <gtest/gtest.h>

namespace store {
namespace {

TEST(CopyName, SaysTimeReasonAndRecords) {
  const CopyName name{.time = 1'795'282'265'123, .reason = CopyReason::change, .records = 1'000'000};
  EXPECT_EQ("2026-11-21 17-31-05-123Z change 1000000.cdb", textOf(name));
  EXPECT_EQ(name, copyNameOf(textOf(name)));
}

TEST(CopyName, ComesBackForEveryReasonAndTime) {
  for (const std::int64_t time :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{999}, std::int64_t{86'399'999},
        std::int64_t{951'782'400'000}, std::int64_t{253'402'300'799'999}}) {
    for (const CopyReason reason : {CopyReason::change, CopyReason::goingBack, CopyReason::tableDeletion,
                                    CopyReason::databaseDeletion}) {
      const CopyName bare{.time = time, .reason = reason};
      EXPECT_EQ(bare, copyNameOf(textOf(bare))) << textOf(bare);
      const CopyName counted{.time = time, .reason = reason, .records = 0};
      EXPECT_EQ(counted, copyNameOf(textOf(counted))) << textOf(counted);
    }
  }
}

TEST(CopyName, OrdersByTime) {
  EXPECT_LT(textOf({.time = 1'000}), textOf({.time = 1'001}));
  EXPECT_LT(textOf({.time = 1'001}), textOf({.time = 1'002, .reason = CopyReason::goingBack}));
}

TEST(CopyName, NothingElseIsOne) {
  for (const char* other :
       {"", ".cdb", "library.cdb", "2026-11-21 16-11-05-123Z change.cdb.cdb", "2026-11-21 16-11-05-123Z .cdb",
        "2026-11-21 16-11-05-123Z change .cdb", "2026-11-21 16-11-05-123Z change -1.cdb",
        "2026-11-21 16-11-05-123Z change 1 2.cdb", "2026-11-21 16-11-05-123Z other 1.cdb",
        "2026-13-21 16-11-05-123Z change.cdb", "2026-02-30 16-11-05-123Z change.cdb",
        "2026-11-21 24-11-05-123Z change.cdb", "2026-11-21 16-60-05-123Z change.cdb",
        "2026-11-21 16-11--5-123Z change.cdb", "2026-11-21 16-11-05-123Zchange.cdb",
        "2026-11-21 16-11-05-123Z change 99999999999999999999.cdb", "2026-11-21 16-11-05-123Z change",
        "2026-11-21 16-11-05-123Z.unfinished"}) {
    EXPECT_FALSE(copyNameOf(other)) << other;
  }
}

TEST(CopyName, AnUnfinishedOneIsToldApart) {
  EXPECT_TRUE(isUnfinishedName(unfinishedNameOf(1'795'282'265'123)));
  EXPECT_FALSE(isUnfinishedName("2026-11-21 16-11-05-123Z change.cdb"));
  EXPECT_FALSE(isUnfinishedName("my notes.unfinished"));
  EXPECT_FALSE(isUnfinishedName("xxxx-11-21 16-11-05-123Z.unfinished"));
}

}  // namespace
}  // namespace store
