// Files of gigabytes, which hold holes but for some bytes: what other programs leave behind the last page is
// no damage and part of the file.
#include <fstream>

#include "tests/store/copies/copies_fixture.h"

namespace store {
namespace {

constexpr std::int64_t kGigabyte = std::int64_t{1} << 30;
// SQLite sets its locks there and never uses the page.
constexpr std::int64_t kFirstLockByte = kGigabyte;
constexpr std::int64_t kLockBytes = 512;

class LargeFilesTest : public CopiesTest {
 protected:
  void growTo(std::int64_t bytes) const {
    std::filesystem::resize_file(path_, static_cast<std::uintmax_t>(bytes));
  }
  static void write(const std::filesystem::path& path, std::int64_t at, const std::string& text) {
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(at);
    file << text;
    ASSERT_TRUE(file);
  }
  static std::string read(const std::filesystem::path& path, std::int64_t at, std::size_t length) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(at);
    std::string text(length, '\0');
    file.read(text.data(), static_cast<std::streamsize>(length));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
  }
};

TEST_F(LargeFilesTest, AroundTheBytesOfTheLocksEverythingIsCopied) {
  const std::string before = contentOf(path_);
  const std::string last = "the last bytes";
  constexpr std::int64_t kBeyond = 300'000;
  growTo(kFirstLockByte + kBeyond);
  write(path_, kFirstLockByte - 1, "<");
  write(path_, kFirstLockByte + kLockBytes, ">");
  write(path_, kFirstLockByte + kBeyond - static_cast<std::int64_t>(last.size()), last);
  CopySettings patient = settings();
  patient.mostWait = std::chrono::minutes(1);
  copies_ = std::make_shared<CopyFolder>(patient);
  change("DELETE FROM t");
  ASSERT_EQ(1u, kept().size());
  const std::filesystem::path copy = pathOfCopy(0);
  ASSERT_EQ(kFirstLockByte + kBeyond, kept()[0].bytes);
  EXPECT_EQ("<", read(copy, kFirstLockByte - 1, 1));
  EXPECT_EQ(">", read(copy, kFirstLockByte + kLockBytes, 1));
  EXPECT_EQ(last, read(copy, kFirstLockByte + kBeyond - static_cast<std::int64_t>(last.size()), 100));
  EXPECT_EQ(before, contentOf(copy));
  ASSERT_TRUE(putBack(copy));
  EXPECT_EQ(before, contentOf(path_));
}

TEST_F(LargeFilesTest, OneThatIsTooLargeIsChangedAllTheSameAndNeitherPutBackNorDeletedWithoutAWord) {
  change("UPDATE t SET b = 'later'");
  const std::filesystem::path copy = pathOfCopy(0);
  const std::string present = contentOf(path_);
  now_ += kHour;
  growTo(2 * kGigabyte + 1);
  const std::string reason =
      "The file is too large for a copy: all copies together take at most a tenth of the free space, and 2 "
      "GB.";
  Status status = putBack(copy);
  EXPECT_EQ(ErrorCode::tooLarge, status.code());
  EXPECT_EQ(reason, status.message());
  EXPECT_EQ(present, contentOf(path_));
  status = GoingBack(*copies_, 0, nullptr).keepBeforeDeletion(utf8Of(path_));
  EXPECT_EQ(ErrorCode::tooLarge, status.code());
  openKeeping();
  run("DELETE FROM t");
  EXPECT_EQ(reason, backend_->formerStates()->takeFailure().message());
  EXPECT_EQ("0", inFile("SELECT count(*) FROM t"));
  close();
  EXPECT_EQ(1u, kept().size());
  expectNothingUnfinished();
}

}  // namespace
}  // namespace store
