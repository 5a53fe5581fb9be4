// The keys of a large table, which come in blocks.
#include <chrono>
#include <new>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/sources/key_reading.h"
#include "tests/server/server_fixture.h"
#include "tests/store/allocation_probe.h"

namespace store {
namespace {

constexpr std::size_t kFirstBlock = 1000;

class ServerKeysTest : public StoreTest {
 protected:
  OdbcConnection& connection() {
    if (connection_ == nullptr) {
      FileDsn dsn;
      // Transactions are their user's own, as in every link that is opened.
      EXPECT_TRUE(readFileDsn(linkTo(database_, "Protocol=7.4-0\n"), &dsn));
      connection_ = std::make_unique<OdbcConnection>(connectionTextOf(dsn), std::vector<std::string>());
    }
    return *connection_;
  }
  static KeyReading::Statements series(int count, const std::string& key = "i") {
    const std::string from = " FROM generate_series(1, " + std::to_string(count) + ") i";
    return {"SELECT " + key + from, "SELECT count(*)" + from, KeySet::Kind::rowId};
  }

  std::unique_ptr<OdbcConnection> connection_;
};

TEST_F(ServerKeysTest, TheCountAndTheFirstKeysAreThereBeforeTheOthers) {
  KeyReading reading(connection(), series(50'000));
  KeySet keys;
  std::size_t count = 0;
  ASSERT_TRUE(reading.begin(&keys, &count));
  EXPECT_EQ(50'000u, count);
  EXPECT_EQ(kFirstBlock, keys.count()) << "the others are not waited for";
  ASSERT_TRUE(reading.readOn(&keys, kFirstBlock));
  EXPECT_EQ(kFirstBlock, keys.count()) << "what is wanted is there";
  ASSERT_TRUE(reading.readOn(&keys, kFirstBlock + 1));
  EXPECT_GT(keys.count(), kFirstBlock);
  ASSERT_TRUE(reading.readOn(&keys, count));
  ASSERT_EQ(50'000u, keys.count());
  for (std::size_t index = 0; index < count; ++index) {
    ASSERT_EQ(static_cast<std::int64_t>(index) + 1, keys.rowIdAt(index));
  }
  ASSERT_TRUE(reading.readOn(&keys, count + 1));
  EXPECT_EQ(50'000u, keys.count()) << "there are no more";
}

TEST_F(ServerKeysTest, AFewKeysComeAtOnceAndSoDoThoseOfAnOrderOfItsOwn) {
  KeySet keys;
  std::size_t count = 0;
  for (const int rows : {0, 1, 999}) {
    KeyReading reading(connection(), series(rows));
    ASSERT_TRUE(reading.begin(&keys, &count));
    EXPECT_EQ(static_cast<std::size_t>(rows), count);
    EXPECT_EQ(count, keys.count());
  }
  KeyReading::Statements uncounted = series(3000);
  uncounted.count.clear();
  KeyReading reading(connection(), uncounted);
  ASSERT_TRUE(reading.begin(&keys, &count));
  EXPECT_EQ(3000u, count);
  EXPECT_EQ(3000u, keys.count());
}

TEST_F(ServerKeysTest, TuplesComeInBlocksToo) {
  KeyReading::Statements statements = series(25'000, "'k' || i, i::text");
  statements.kind = KeySet::Kind::tuple;
  KeyReading reading(connection(), statements);
  KeySet keys(KeySet::Kind::tuple);
  std::size_t count = 0;
  ASSERT_TRUE(reading.begin(&keys, &count));
  EXPECT_EQ(kFirstBlock, keys.count());
  ASSERT_TRUE(reading.readOn(&keys, count));
  ASSERT_EQ(25'000u, keys.count());
  for (const std::size_t index : {std::size_t{0}, kFirstBlock - 1, kFirstBlock, std::size_t{24'999}}) {
    const std::string number = std::to_string(index + 1);
    EXPECT_EQ(Key(std::vector<Value>{"k" + number, number}), keys.keyAt(index));
  }
}

TEST_F(ServerKeysTest, KeysThatCannotBeHadAnyMoreAreToldAndThoseThatAreThereStay) {
  KeyReading reading(connection(), series(50'000, "CASE WHEN i = 5000 THEN i / 0 ELSE i END"));
  KeySet keys;
  std::size_t count = 0;
  ASSERT_TRUE(reading.begin(&keys, &count));
  const Status status = reading.readOn(&keys, count);
  EXPECT_EQ(ErrorCode::structureChanged, status.code());
  EXPECT_NE(std::string::npos, status.message().find("opened again")) << status.message();
  EXPECT_EQ(ErrorCode::structureChanged, reading.readOn(&keys, count).code()) << "and each time";
  EXPECT_EQ(kFirstBlock, keys.count());
  KeySet untouched;
  untouched.append(std::int64_t{7});
  KeyReading failing(connection(), series(10, "i / 0"));
  EXPECT_FALSE(failing.begin(&untouched, &count));
  EXPECT_EQ(1u, untouched.count());
}

TEST_F(ServerKeysTest, KeysThatThereWasNoMemoryForAreNotPassedOver) {
  KeyReading::Statements statements = series(5'000, "'key ' || i || ' of a table'");
  statements.kind = KeySet::Kind::tuple;
  bool wasReached = true;
  for (std::size_t allowed = 0; wasReached; allowed = 2 * allowed + 1) {
    KeyReading reading(connection(), statements);
    KeySet keys(KeySet::Kind::tuple);
    std::size_t count = 0;
    ASSERT_TRUE(reading.begin(&keys, &count));
    try {
      const testsupport::AllocationLimit limit(allowed);
      static_cast<void>(reading.readOn(&keys, count));
      wasReached = limit.wasReached();
    } catch (const std::bad_alloc&) {
      wasReached = true;
    }
    const Status status = reading.readOn(&keys, count);
    EXPECT_TRUE(status || status.code() == ErrorCode::structureChanged) << status.message();
    EXPECT_TRUE(!status || keys.count() == count) << allowed;
    for (std::size_t index = 0; index < keys.count(); ++index) {
      const std::string key = "key " + std::to_string(index + 1) + " of a table";
      ASSERT_EQ(Key(std::vector<Value>{key}), keys.keyAt(index)) << allowed;
    }
  }
}

TEST_F(ServerKeysTest, AReadingThatIsDroppedInItsMidstEndsAtTheServerToo) {
  for (int round = 0; round < 3; ++round) {
    KeyReading reading(connection(), series(2'000'000));
    KeySet keys;
    std::size_t count = 0;
    ASSERT_TRUE(reading.begin(&keys, &count));
    EXPECT_EQ(2'000'000u, count);
  }
  // Who is asked about is not who asks.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  const auto busy = [this] {
    return OtherProgram(path_).ask(
        "SELECT count(*) FROM pg_stat_activity WHERE backend_type = 'client backend' AND datname = '" +
        database_ + "' AND pid <> pg_backend_pid() AND state <> 'idle'");
  };
  while (busy() != "0" && std::chrono::steady_clock::now() < deadline) {
  }
  EXPECT_EQ("0", busy());
}

TEST_F(ServerKeysTest, ARecordsetHasTheRecordsOfTheMomentOfItsOpening) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  runOnServer("INSERT INTO t SELECT i, 'row ' || i FROM generate_series(1, 60000) i", database_);
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  runOnServer("DELETE FROM t WHERE k = 59999; INSERT INTO t VALUES (60001, 'late')", database_);
  ASSERT_EQ(60'000, rows->recordCount());
  EXPECT_EQ("row 1", textOf(*rows, 1));
  ASSERT_TRUE(rows->moveLast());
  EXPECT_EQ(60'000, rows->position());
  EXPECT_EQ("row 60000", textOf(*rows, 1));
  ASSERT_TRUE(rows->movePrevious());
  Cell cell;
  EXPECT_EQ(ErrorCode::noCurrentRecord, rows->cell(1, &cell).code()) << "another program has deleted it";
  ASSERT_TRUE(rows->moveNext());
  ASSERT_TRUE(rows->moveNext());
  EXPECT_TRUE(rows->isEof());
}

TEST_F(ServerKeysTest, WhatNeedsTheLastKeysWaitsForThem) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  runOnServer("INSERT INTO t SELECT i, 'row ' || i FROM generate_series(1, 30000) i", database_);
  open();
  const auto opened = [this] { return records("Select * from [t]"); };
  {
    const auto rows = opened();
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, std::int64_t{-5}));
    ASSERT_TRUE(rows->setValue(1, std::string("added")));
    ASSERT_TRUE(rows->update());
    EXPECT_EQ(30'001, rows->position()) << "behind all others";
    ASSERT_TRUE(rows->setPosition(30'000));
    EXPECT_EQ("row 30000", textOf(*rows, 1));
    ASSERT_TRUE(rows->remove());
    EXPECT_EQ(30'000, rows->recordCount());
  }
  {
    const auto rows = opened();
    EXPECT_EQ("added", textOf(*rows, 1));
    ASSERT_TRUE(rows->remove()) << "the first, before the last has come";
    EXPECT_EQ(29'999, rows->recordCount());
    ASSERT_TRUE(rows->moveLast());
    EXPECT_EQ("row 29999", textOf(*rows, 1));
  }
  {
    std::string last;
    const auto rows = opened();
    ASSERT_TRUE(rows->moveLast());
    ASSERT_TRUE(rows->bookmark(&last));
    const auto others = opened();
    ASSERT_TRUE(others->setBookmark(last));
    EXPECT_EQ(29'999, others->position());
    EXPECT_EQ(29'999, opened()->positionOf({"t", std::int64_t{29'999}}));
    std::unique_ptr<Recordset> copy;
    ASSERT_TRUE(opened()->clone(&copy));
    ASSERT_TRUE(copy->moveLast());
    EXPECT_EQ("row 29999", textOf(*copy, 1));
  }
}

}  // namespace
}  // namespace store
