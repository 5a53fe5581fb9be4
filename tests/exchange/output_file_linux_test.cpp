#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/store/exchange/bytes/output_file.h"
#include "tests/support/paths.h"

// Links, rights and sudden ends, as only some systems have them.

namespace store::exchange {
namespace {

namespace fs = std::filesystem;

class OutputFileOnLinuxTest : public testing::Test {
 protected:
  fs::path path(const std::string& name) const { return folder_.file(name); }
  void put(const std::string& name, const std::string& text) const {
    testsupport::writeFile(path(name), text);
  }
  std::string get(const std::string& name) const { return testsupport::contentOf(path(name)); }
  testsupport::TempFolder folder_;
};

TEST_F(OutputFileOnLinuxTest, ALinkToTheDatabaseIsInUse) {
  put("a.cdb", "data");
  fs::create_symlink(path("a.cdb"), path("link.cdb"));
  OutputFile output;
  EXPECT_EQ(output.create(path("link.cdb"), true, {path("a.cdb")}).code(), ErrorCode::fileExists);
  // SQLite keeps its own files beside the file itself.
  EXPECT_EQ(output.create(path("a.cdb-journal"), true, {path("link.cdb")}).code(), ErrorCode::fileExists);
}

TEST_F(OutputFileOnLinuxTest, AFileIsReplacedWhereTheLinkLeads) {
  fs::create_directory(path("elsewhere"));
  put("elsewhere/a.csv", "old");
  fs::create_symlink(path("elsewhere/a.csv"), path("link.csv"));
  OutputFile output;
  EXPECT_EQ(output.create(path("link.csv"), false, {}).code(), ErrorCode::fileExists);
  ASSERT_TRUE(output.create(path("link.csv"), true, {}));
  ASSERT_TRUE(output.write("new"));
  ASSERT_TRUE(output.keep());
  EXPECT_TRUE(fs::is_symlink(path("link.csv")));
  EXPECT_EQ(get("elsewhere/a.csv"), "new");
}

TEST_F(OutputFileOnLinuxTest, ALinkThatLeadsNowhereStays) {
  fs::create_symlink(path("nowhere"), path("link.csv"));
  OutputFile output;
  EXPECT_EQ(output.create(path("link.csv"), false, {}).code(), ErrorCode::fileExists);
  EXPECT_EQ(output.create(path("link.csv"), true, {}).code(), ErrorCode::cannotOpen);
  EXPECT_TRUE(fs::is_symlink(path("link.csv")));
}

TEST_F(OutputFileOnLinuxTest, TheRightsOfAReplacedFileStay) {
  put("a.csv", "old");
  ASSERT_EQ(chmod(path("a.csv").c_str(), 0600), 0);
  OutputFile output;
  ASSERT_TRUE(output.create(path("a.csv"), true, {}));
  ASSERT_TRUE(output.keep());
  struct stat about {};
  ASSERT_EQ(stat(path("a.csv").c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 0777u, 0600u);
}

TEST_F(OutputFileOnLinuxTest, ALongNameIsNoHindrance) {
  const std::string name(250, 'n');
  OutputFile output;
  ASSERT_TRUE(output.create(path(name), false, {}));
  ASSERT_TRUE(output.write("whole"));
  ASSERT_TRUE(output.keep());
  EXPECT_EQ(get(name), "whole");
}

TEST_F(OutputFileOnLinuxTest, AKilledProgramLeavesNoFileOfThatName) {
  put("old.csv", "old");
  const pid_t child = fork();
  if (child == 0) {
    OutputFile output;
    OutputFile other;
    const bool began = output.create(path("new.csv"), false, {}) && output.write("half") &&
                       other.create(path("old.csv"), true, {}) && other.write("half");
    _exit(began ? 9 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(WEXITSTATUS(status), 9);
  EXPECT_FALSE(fs::exists(path("new.csv")));
  EXPECT_EQ(get("old.csv"), "old");
}

TEST_F(OutputFileOnLinuxTest, WhenTheSystemDoesNotTellWhetherAFileIsInUseItIsNotReplaced) {
  if (geteuid() == 0) {
    // Nothing is closed to root; a name that no folder can be is told by nobody either.
    const std::string loop = path("loop");
    fs::create_symlink(path("loop"), path("loop"));
    put("a.csv", "old");
    OutputFile output;
    EXPECT_EQ(output.create(path("a.csv"), true, {loop}).code(), ErrorCode::cannotOpen);
  } else {
    fs::create_directory(path("closed"));
    put("closed/a.cdb", "data");
    put("a.csv", "old");
    ASSERT_EQ(chmod(path("closed").c_str(), 0), 0);
    OutputFile output;
    EXPECT_EQ(output.create(path("a.csv"), true, {path("closed/a.cdb")}).code(), ErrorCode::cannotOpen);
    ASSERT_EQ(chmod(path("closed").c_str(), 0700), 0);
  }
  EXPECT_EQ(get("a.csv"), "old");
}

}  // namespace
}  // namespace store::exchange
