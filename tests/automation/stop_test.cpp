// Statements that take their time: whom the connection asks, and what stops them.
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "tests/automation/scripts/script_function.h"
#include "tests/automation/support/automation_test.h"
#include "tests/support/exclusive_lock.h"

namespace automationtest {
namespace {

constexpr HRESULT kStopped = static_cast<HRESULT>(0x80040E4Eu);
constexpr HRESULT kLocked = objectModelError(3730);
constexpr long kWorking = 0;
constexpr long kWaiting = 1;
constexpr wchar_t kEndless[] =
    L"WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s) SELECT count(*) FROM s, T";

/// A script's function that the database asks while it takes its time.
class Question final : public ScriptFunction {
 public:
  using Answer = std::function<OwnedVariant(int asked)>;
  explicit Question(Answer answer)
      : ScriptFunction([this](const DISPPARAMS& arguments) {
          EXPECT_EQ(1u, arguments.cArgs);
          EXPECT_EQ(VT_I4, V_VT(&arguments.rgvarg[0]));
          EXPECT_EQ(expected_, V_I4(&arguments.rgvarg[0]));
          return answer_(callCount());
        }),
        answer_(std::move(answer)) {}

  int asked() const { return callCount(); }
  /// What the database is to say that it takes its time with.
  void expect(long busy) { expected_ = busy; }

 private:
  Answer answer_;
  long expected_ = kWorking;
};

class StopTest : public AutomationTest {
 protected:
  StopTest() {
    EXPECT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (N Integer)"), S_OK);
    EXPECT_EQ(execute(connection_.get(), L"INSERT INTO T VALUES (1), (2)"), S_OK);
  }

  void expectUsable() {
    EXPECT_THAT(columnTexts(recordsOf(connection_.get(), L"Select * from [T]").get(), 0),
                testing::ElementsAre(L"1", L"2"));
  }

  /// Has the connection ask a function that answers so.
  Question& ask(Question::Answer answer) {
    questions_.push_back(std::make_unique<Question>(std::move(answer)));
    EXPECT_EQ(connection_->AskWhileBusy(questions_.back().get()), S_OK);
    return *questions_.back();
  }

 private:
  // In front of the connection, which lets go of them at its end.
  std::vector<std::unique_ptr<Question>> questions_;

 protected:
  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
};

TEST_F(StopTest, AnAnswerThatIsTrueStopsAnEndlessStatement) {
  const Question& question = ask([](int asked) { return variant(asked >= 3 ? -1L : 0L); });
  ComPtr<IAdoceRecordset> records = newRecordset();
  EXPECT_EQ(openOn(records.get(), connection_.get(), kEndless), kStopped);
  EXPECT_EQ(question.asked(), 3);
  EXPECT_EQ(execute(connection_.get(),
                    L"INSERT INTO T SELECT a.N FROM T a, (WITH RECURSIVE s(n) AS (SELECT 1 "
                    L"UNION ALL SELECT n + 1 FROM s) SELECT n FROM s)"),
            kStopped);
  expectUsable();
}

TEST_F(StopTest, TheQuestionCantUseTheDatabase) {
  HRESULT used = S_OK;
  ask([&](int) {
    used = execute(connection_.get(), L"DELETE FROM T");
    return variant(-1L);
  });
  EXPECT_EQ(execute(connection_.get(), kEndless), kStopped);
  EXPECT_EQ(used, objectModelError(3219));
  expectUsable();
}

TEST_F(StopTest, AnAnswerThatIsTrueGivesUpTheWaitingForAnotherProgram) {
  Question& question = ask([](int asked) { return variant(asked >= 3 ? -1L : 0L); });
  question.expect(kWaiting);
  const BSTR path = nullptr;
  {
    const auto lock = lockExclusively(pathOf(L"test.cdb"));
    ASSERT_TRUE(lock->isHeld());
    EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), kLocked);
    EXPECT_EQ(question.asked(), 3);
    // The next one is told so at once; and so is the opening.
    EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), kLocked);
    ASSERT_EQ(connection_->Close(), S_OK);
    EXPECT_EQ(connection_->Open(path, nullptr, nullptr, -1), kLocked);
    EXPECT_EQ(question.asked(), 5);
  }
  ASSERT_EQ(connection_->Open(path, nullptr, nullptr, -1), S_OK);
  EXPECT_EQ(question.asked(), 5);
  expectUsable();
}

TEST_F(StopTest, NobodyIsAskedAfterNull) {
  Question& question = ask([](int) { return variant(-1L); });
  EXPECT_GT(question.references(), 1);
  ASSERT_EQ(connection_->AskWhileBusy(nullptr), S_OK);
  EXPECT_EQ(question.references(), 1);
  ASSERT_EQ(connection_->AskWhileBusy(&question), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_GT(question.references(), 1) << "it holds for what is opened next";
  ASSERT_EQ(connection_->AskWhileBusy(nullptr), S_OK);
  EXPECT_EQ(question.references(), 1);
}

TEST_F(StopTest, AnotherThreadStopsWhatRuns) {
  std::atomic<bool> isDone = false;
  std::thread stopper([&] {
    while (!isDone) {
      EXPECT_EQ(connection_->Stop(), S_OK);
      std::this_thread::yield();
    }
  });
  EXPECT_EQ(execute(connection_.get(), kEndless), kStopped);
  isDone = true;
  stopper.join();
  EXPECT_EQ(connection_->Stop(), S_OK);
  expectUsable();
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(connection_->Stop(), S_OK);
}

}  // namespace
}  // namespace automationtest
