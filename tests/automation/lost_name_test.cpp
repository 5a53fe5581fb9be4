// The open file loses its name to another program.
#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

constexpr HRESULT kFileGone = objectModelError(4001);
constexpr HRESULT kFileReplaced = objectModelError(4002);

class LostName : public AutomationTest {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(pathOf(L"place"));
    path_ = makeDatabase(L"place\\data.cdb");
    SqliteFile(path_).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('ours')");
    connection_ = connectTo(path_);
  }

  /// Nobody can rename a file that is open, but Wine lets everybody rename the folder that holds it.
  void take() { std::filesystem::rename(pathOf(L"place"), pathOf(L"away")); }

  /// What `Errors` says of the last failure.
  std::wstring sentence() {
    ComPtr<IAdoceErrors> errors;
    ComPtr<IAdoceError> error;
    UniqueBstr said;
    EXPECT_EQ(connection_->get_Errors(errors.put()), S_OK);
    EXPECT_EQ(errors->get_Item(*variant(0L), error.put()), S_OK);
    if (!error) return L"(none)";
    EXPECT_EQ(error->get_Description(said.put()), S_OK);
    return said.get();
  }

  std::wstring path_;
  ComPtr<IAdoceConnection> connection_;
};

TEST_F(LostName, CheckFileTellsOfADeletedFileAndChangesAreRefused) {
  EXPECT_EQ(connection_->CheckFile(), S_OK);
  const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
  take();
  EXPECT_EQ(connection_->CheckFile(), kFileGone);
  EXPECT_EQ(sentence(), L"The file was deleted or renamed while it was open.");
  ASSERT_EQ(put(records.get(), 0, variant(L"typed")), S_OK);
  EXPECT_EQ(update(records.get()), kFileGone);
  EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), kFileGone);
  EXPECT_EQ(records->CancelUpdate(), S_OK);
  EXPECT_EQ(textOf(records.get(), 0), L"ours");
}

TEST_F(LostName, CheckFileTellsOfAReplacedFile) {
  take();
  std::filesystem::create_directory(pathOf(L"place"));
  makeDatabase(L"place\\data.cdb");
  const std::string theirs = contentOf(path_);
  EXPECT_EQ(connection_->CheckFile(), kFileReplaced);
  EXPECT_EQ(sentence(), L"Another file has taken the place of the one that is open.");
  EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), kFileReplaced);
  EXPECT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(contentOf(path_), theirs);
}

/// As a tool leaves it that copies a folder with all that is said of its files.
TEST_F(LostName, CheckFileTellsOfACopyWithTheSameTimes) {
  take();
  std::filesystem::create_directory(pathOf(L"place"));
  ASSERT_NE(CopyFileW(pathOf(L"away\\data.cdb").c_str(), path_.c_str(), TRUE), FALSE);
  std::filesystem::last_write_time(path_, std::filesystem::last_write_time(pathOf(L"away\\data.cdb")));
  EXPECT_EQ(connection_->CheckFile(), kFileReplaced);
}

TEST_F(LostName, AChangeByAnotherProgramLeavesTheFileWhatItIs) {
  SqliteFile(path_).run("INSERT INTO T VALUES ('theirs')");
  EXPECT_EQ(connection_->CheckFile(), S_OK);
  EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK);
  EXPECT_EQ(connection_->CheckFile(), S_OK);
}

TEST_F(LostName, SaveCopyKeepsWhatIsOpen) {
  take();
  const std::wstring copy = pathOf(L"copy \u65e5\u672c.cdb");
  EXPECT_EQ(connection_->SaveCopy(text(copy.c_str()).get()), S_OK);
  EXPECT_EQ(connection_->CheckFile(), kFileGone) << "the connection stays with what it has open";
  EXPECT_EQ(connection_->SaveCopy(text(copy.c_str()).get()), objectModelError(3731));
  EXPECT_EQ(connection_->SaveCopy(text(L"").get()), objectModelError(3002));
  EXPECT_EQ(connection_->SaveCopy(nullptr), objectModelError(3002));
  EXPECT_EQ(connection_->Close(), S_OK);
  const ComPtr<IAdoceConnection> other = connectTo(copy);
  EXPECT_EQ(textOf(recordsOf(other.get(), L"Select * from [T]").get(), 0), L"ours");
  EXPECT_EQ(execute(other.get(), L"DELETE FROM T"), S_OK);
}

TEST_F(LostName, TheOldNameIsFreeForTheCopyOfADeletedFile) {
  take();
  std::filesystem::create_directory(pathOf(L"place"));
  EXPECT_EQ(connection_->SaveCopy(text(path_.c_str()).get()), S_OK);
  EXPECT_EQ(connection_->CheckFile(), kFileReplaced);
}

TEST_F(LostName, AClosedConnectionHasNoFile) {
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(connection_->CheckFile(), objectModelError(3709));
  EXPECT_EQ(connection_->SaveCopy(text(pathOf(L"copy.cdb").c_str()).get()), objectModelError(3709));
  EXPECT_FALSE(std::filesystem::exists(pathOf(L"copy.cdb")));
}

TEST_F(LostName, TheStoreWithoutADatabaseHasNothingToCopy) {
  const ComPtr<IAdoceConnection> store = connectTo(L"");
  EXPECT_EQ(store->CheckFile(), S_OK);
  EXPECT_EQ(store->SaveCopy(text(pathOf(L"copy.cdb").c_str()).get()), kNoTable);
}

}  // namespace
}  // namespace automationtest
