// What takes its time: one wait for one thing that the user did, and statements that he stops.
#include <chrono>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using What = Progress::What;
using namespace std::chrono_literals;

constexpr wchar_t kEndless[] =
    L"WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s) SELECT count(*) FROM s, Second";

class DocumentBusyTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    open();
    document().openTableSelection(0);
    document().setViewMode(ViewMode::form);
    // So that the next reading takes a lock.
    while (!lock()->isHeld()) {
    }
    lock_.reset();
    window().prompts.goesOnBusy = [this](What what) {
      EXPECT_TRUE(document().isBusy());
      asked_.push_back(what);
      return patience_ == 0 || asked_.size() < patience_;
    };
  }

  ExclusiveLock* lock() {
    lock_ = lockExclusively(path().wstring());
    return lock_.get();
  }
  std::vector<std::wstring> takeTexts() { return window().prompts.takeTexts(); }
  std::chrono::steady_clock::duration timeOf(int (Document::*move)()) {
    const auto begin = std::chrono::steady_clock::now();
    (document().*move)();
    return std::chrono::steady_clock::now() - begin;
  }

  std::unique_ptr<ExclusiveLock> lock_;
  std::vector<What> asked_;
  std::size_t patience_ = 0;  // questions until the user gives up; 0: he never does
};

constexpr wchar_t kNotRead[] = L"The record could not be read.\nAnother program is using the database.";

TEST_F(DocumentBusyTest, AllThatOneThingWaitsForTakesFiveSecondsTogether) {
  ASSERT_TRUE(lock()->isHeld());
  const auto first = timeOf(&Document::moveNextRecord);
  EXPECT_GT(first, 4s);
  EXPECT_LT(first, 8s);
  EXPECT_THAT(asked_, Each(What::waiting));
  EXPECT_TRUE(std::exchange(window().prompts.waitsForTheEnd, false));
  // It is still the same thing: nothing was listened to.
  EXPECT_LT(timeOf(&Document::moveNextRecord), 1s);
  EXPECT_FALSE(window().prompts.waitsForTheEnd);
  EXPECT_THAT(takeTexts(), ElementsAre(kNotRead, kNotRead));
  EXPECT_TRUE(window().prompts.isProgressShown);
  document().busyOver();
  EXPECT_FALSE(window().prompts.isProgressShown);
  EXPECT_GT(timeOf(&Document::movePreviousRecord), 4s);
  EXPECT_TRUE(window().prompts.waitsForTheEnd);
}

TEST_F(DocumentBusyTest, WhoGivesUpIsAskedNoMoreForTheSameThing) {
  patience_ = 2;
  ASSERT_TRUE(lock()->isHeld());
  EXPECT_LT(timeOf(&Document::moveNextRecord), 2s);
  EXPECT_THAT(asked_, ElementsAre(What::waiting, What::waiting));
  document().moveLastRecord();
  EXPECT_THAT(asked_, SizeIs(2));
  document().busyOver();
  lock_.reset();
  takeTexts();
  document().moveFirstRecord();
  EXPECT_EQ(value(), L"10");
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentBusyTest, AStatementThatTakesItsTimeIsStopped) {
  patience_ = 3;
  String reason;
  EXPECT_FALSE(document().returnsRecords(kEndless, reason));
  EXPECT_STREQ(reason.text(), L"The statement was stopped.");
  EXPECT_THAT(asked_, ElementsAre(What::working, What::working, What::working));
  EXPECT_FALSE(document().isBusy());
  // The records in use are opened anew.
  window().prompts.goesOnBusy = [](What) { return true; };
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentBusyTest, AnAskingThatFailsIsOverAsWell) {
  int askedCount = 0;
  window().prompts.goesOnBusy = [&](What) {
    if (++askedCount == 1) throw std::bad_alloc();
    return false;
  };
  const std::wstring lasting = std::wstring(kEndless) + L" WHERE n < 30000000";
  String reason;
  document().returnsRecords(String(lasting.c_str()), reason);
  EXPECT_EQ(askedCount, 2);
  EXPECT_STREQ(reason.text(), L"The statement was stopped.");
  EXPECT_FALSE(document().isBusy());
}

TEST_F(DocumentBusyTest, WhileItIsAskedTheDatabaseCantBeUsed) {
  bool hasRead = true;
  window().prompts.goesOnBusy = [&](What) {
    String text;
    hasRead = static_cast<bool>(document().readRow(0, 0, text));
    return false;
  };
  String reason;
  EXPECT_FALSE(document().returnsRecords(kEndless, reason));
  EXPECT_FALSE(hasRead);
}

TEST_F(DocumentBusyTest, RecordsThatAreLockedAreToldAtTheSwitchAndTriedAgain) {
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(1);
  patience_ = 1;
  ASSERT_TRUE(lock()->isHeld());
  document().setViewMode(ViewMode::form);
  EXPECT_THAT(takeTexts(),
              ElementsAre(L"The records could not be opened.\nAnother program is using the database."));
  EXPECT_FALSE(document().isRecordsetOpen());
  lock_.reset();
  document().busyOver();
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(value(), L"1");
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentBusyTest, TheOpeningIsGivenUpToo) {
  document().closeDatabase();
  patience_ = 2;
  ASSERT_TRUE(lock()->isHeld());
  EXPECT_FALSE(document().openDatabase(path().c_str()));
  EXPECT_THAT(asked_, ElementsAre(What::waiting, What::waiting));
}

}  // namespace
