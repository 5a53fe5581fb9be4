#include "platform/store/exchange/bytes/output_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/paths.h"

namespace store::exchange {
namespace {

class OutputFileTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const {
    const std::u8string text = folder_.file(name).u8string();
    return {text.begin(), text.end()};
  }
  void put(const std::string& name, const std::string& text) const {
    testsupport::writeFile(folder_.file(name), text);
  }
  std::string get(const std::string& name) const { return testsupport::contentOf(folder_.file(name)); }
  /// What is in the folder, in order.
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      const std::u8string name = entry.path().filename().u8string();
      found.emplace_back(name.begin(), name.end());
    }
    std::sort(found.begin(), found.end());
    return found;
  }
  using Names = std::vector<std::string>;
  Status create(const std::string& name, bool replaces = false, const Names& inUse = {}) {
    return output_.create(path(name), replaces, inUse);
  }

  testsupport::TempFolder folder_;
  OutputFile output_;
};

TEST_F(OutputFileTest, ANewFileHasItsNameOnlyWhenItIsWhole) {
  ASSERT_TRUE(create("a.csv"));
  ASSERT_TRUE(output_.write("half"));
  ASSERT_EQ(names().size(), 1u);
  EXPECT_TRUE(names()[0].starts_with("a.csv.part")) << names()[0];
  ASSERT_TRUE(output_.write(" and half"));
  ASSERT_TRUE(output_.keep());
  EXPECT_FALSE(output_.isOpen());
  EXPECT_EQ(names(), Names{"a.csv"});
  EXPECT_EQ(get("a.csv"), "half and half");
}

TEST_F(OutputFileTest, WhatIsNotKeptLeavesNothing) {
  {
    OutputFile output;
    ASSERT_TRUE(output.create(path("a.csv"), false, {}));
    ASSERT_TRUE(output.write("half"));
  }
  EXPECT_EQ(names(), Names());
}

TEST_F(OutputFileTest, AnExistingFileStaysUntilTheNewOneIsWhole) {
  put("a.csv", "old");
  EXPECT_EQ(create("a.csv").code(), ErrorCode::fileExists);
  ASSERT_TRUE(create("a.csv", true));
  ASSERT_TRUE(output_.write("new"));
  EXPECT_EQ(get("a.csv"), "old");
  ASSERT_TRUE(output_.keep());
  EXPECT_EQ(get("a.csv"), "new");
  EXPECT_EQ(names(), Names{"a.csv"});
}

TEST_F(OutputFileTest, WhatAnotherProgramMakesMeanwhileIsNotReplaced) {
  ASSERT_TRUE(create("a.csv"));
  ASSERT_TRUE(output_.write("mine"));
  put("a.csv", "theirs");
  const Status status = output_.keep();
  EXPECT_EQ(status.code(), ErrorCode::fileExists);
  EXPECT_EQ(status.message(), "The file " + path("a.csv") + " exists already.");
  EXPECT_EQ(get("a.csv"), "theirs");
  EXPECT_EQ(names(), Names{"a.csv"});
}

TEST_F(OutputFileTest, ExceptWhereThatWasAsked) {
  ASSERT_TRUE(create("a.csv", true));
  ASSERT_TRUE(output_.write("mine"));
  put("a.csv", "theirs");
  ASSERT_TRUE(output_.keep());
  EXPECT_EQ(get("a.csv"), "mine");
}

TEST_F(OutputFileTest, WhatAnEarlierRunHasLeftIsInNobodysWay) {
  ASSERT_TRUE(create("a.csv"));
  const std::string left = names()[0];
  OutputFile other;
  ASSERT_TRUE(other.create(path("a.csv"), false, {}));
  ASSERT_TRUE(other.write("other"));
  ASSERT_TRUE(other.keep());
  EXPECT_EQ(get("a.csv"), "other");
  EXPECT_EQ(names(), (Names{"a.csv", left}));
}

TEST_F(OutputFileTest, AFolderIsNotReplaced) {
  std::filesystem::create_directory(folder_.file("a.csv"));
  EXPECT_EQ(create("a.csv", true).code(), ErrorCode::cannotOpen);
  EXPECT_EQ(names(), Names{"a.csv"});
}

TEST_F(OutputFileTest, WithoutItsFolderThereIsNoFile) {
  EXPECT_EQ(create("nowhere/a.csv").code(), ErrorCode::inputOutput);
  EXPECT_EQ(names(), Names());
}

TEST_F(OutputFileTest, WhatIsInUseIsNeverReplaced) {
  put("a.cdb", "data");
  put("a.cdb-wal", "log");
  for (const char* name : {"a.cdb", "a.cdb-wal", "a.cdb-journal", "a.cdb-shm", "A.cdb-Journal"}) {
    SCOPED_TRACE(name);
    const Status status = create(name, true, {path("a.cdb")});
    EXPECT_EQ(status.code(), ErrorCode::fileExists);
    EXPECT_EQ(status.message(), "The file " + path(name) + " is in use and is not replaced.");
  }
  EXPECT_EQ(names(), (Names{"a.cdb", "a.cdb-wal"}));
  EXPECT_EQ(get("a.cdb"), "data");
  EXPECT_TRUE(create("b.cdb-journal", true, {path("a.cdb")}));
}

TEST_F(OutputFileTest, NotEvenWhereItWasPutWhileTheFileWasWritten) {
  ASSERT_TRUE(create("a.csv", true, {path("a.cdb")}));
  put("a.cdb", "data");
  std::filesystem::create_hard_link(folder_.file("a.cdb"), folder_.file("a.csv"));
  EXPECT_EQ(output_.keep().code(), ErrorCode::fileExists);
  EXPECT_EQ(get("a.csv"), "data");
  EXPECT_EQ(names(), (Names{"a.cdb", "a.csv"}));
}

TEST_F(OutputFileTest, ADatabaseInAnotherFolderHasItsJournalThere) {
  std::filesystem::create_directory(folder_.file("other"));
  put("other/a.cdb", "data");
  EXPECT_TRUE(create("a.cdb-journal", false, {path("other/a.cdb")}));
  OutputFile output;
  EXPECT_EQ(output.create(path("other/../other/a.cdb-journal"), false, {path("other/a.cdb")}).code(),
            ErrorCode::fileExists);
}

}  // namespace
}  // namespace store::exchange
