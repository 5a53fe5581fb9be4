// A folder in which nothing can be written. Whoever may write everywhere becomes nobody for the time.
#include <sys/stat.h>
#include <unistd.h>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

namespace fs = std::filesystem;

class ReadOnlyFolderTest : public StoreTest {
 protected:
  ReadOnlyFolderTest() : place_(folder_.file("place")) {
    fs::create_directory(place_);
    path_ = place_ / "data.cdb";
  }
  void SetUp() override {
    StoreTest::SetUp();
    prepare("CREATE TABLE t (a Integer); INSERT INTO t VALUES (1)");
    // Everybody may write to the file itself.
    ASSERT_EQ(0, chmod(path_.c_str(), 0666));
    ASSERT_EQ(0, chmod(folder_.path().c_str(), 0755));
    ASSERT_EQ(0, chmod(place_.c_str(), 0555));
    if (isMighty_) {
      ASSERT_EQ(0, seteuid(kNobody));
    }
  }
  void TearDown() override {
    backend_.reset();
    if (isMighty_) {
      ASSERT_EQ(0, seteuid(0));
    }
    ASSERT_EQ(0, chmod(place_.c_str(), 0755));
  }

  static constexpr uid_t kNobody = 65534;
  const bool isMighty_ = geteuid() == 0;
  const fs::path place_;
};

TEST_F(ReadOnlyFolderTest, AChangeIsRefusedByThatWordAndTheRecordsCanBeRead) {
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows);
  EXPECT_EQ("1", textOf(*rows, 0));
  ASSERT_TRUE(rows->setValue(0, std::int64_t{2}));
  const Status status = rows->update();
  EXPECT_EQ(ErrorCode::readOnly, status.code());
  EXPECT_EQ("The folder of the database is read-only.", status.message());
  EXPECT_EQ("2", textOf(*rows, 0)) << "what was typed is kept";
}

TEST_F(ReadOnlyFolderTest, ThatIsKnownBeforeThereIsAChange) {
  open();
  const Status status = backend_->tryWriting();
  EXPECT_EQ(ErrorCode::readOnly, status.code());
  EXPECT_EQ("The folder of the database is read-only.", status.message());
}

}  // namespace
}  // namespace store
