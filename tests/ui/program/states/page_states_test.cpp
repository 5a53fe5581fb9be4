// The pages in every state: each command, tap, key and panel change from each page in each state, and random
// walks of them, beside a model of what has to be there.
#include "tests/ui/program/states/page_states.h"

#include <windows.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/window/program_state.h"
#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "gmock/gmock.h"
#include "tests/shell/shell_settings.h"
#include "tests/support/paths.h"
#include "tests/ui/program/states/page_actions.h"
#include "tests/ui/program/states/page_window.h"
#include "tests/ui/remote/program_thread.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/form_ids.h"

namespace {

class PageStatesTest : public testing::Test {
 protected:
  void SetUp() override {
    setPanelPolicy(kPanelAlways);
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 0);
    pages_.emplace(folder_.path());
    program_ = std::make_unique<ProgramThread>(L"\"" + (folder_.path() / L"plain.cdb").wstring() + L"\"");
    const HWND main = program_->waitForPage();
    ASSERT_NE(main, nullptr);
    caller_.emplace(main);
    answers_.emplace();
    caller_->call([this] { pages_->open(Pages::kPlain); });
  }
  void TearDown() override {
    answers_.reset();
    caller_.reset();
    program_.reset();
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  /// A number that the environment may give, for longer runs.
  static int fromEnvironment(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text ? std::atoi(text) : otherwise;
  }

  static std::string told(const std::vector<std::string>& failures) {
    std::string text;
    for (const std::string& failure : failures) text += failure + "\n";
    return text;
  }

  /// Whether the window agrees with the model in this state.
  static bool prepare(Pages& pages, const State& state);
  /// The same after one action more.
  static bool act(Pages& pages, const Action& action);
  static void putPanelDown(Pages& pages) {
    if (pages.model.isPanelUp()) pages.pressPanelButton();
  }
  Pages& pages() { return *pages_; }
  void onProgram(const std::function<void()>& what) { caller_->call(what); }

 private:
  testsupport::TempFolder folder_;
  std::optional<Pages> pages_;
  std::unique_ptr<ProgramThread> program_;
  std::optional<ThreadCaller> caller_;
  std::optional<PromptAnswers> answers_;
};

bool PageStatesTest::prepare(Pages& pages, const State& state) {
  pages.setDiscards(true);
  putPanelDown(pages);
  pages.open(state.database);
  pages.trail = state.name;
  state.prepare(pages);
  pages.setDiscards(false);
  return pages.agrees();
}

bool PageStatesTest::act(Pages& pages, const Action& action) {
  pages.trail += std::string(", ") + action.name;
  action.go(pages);
  return pages.agrees();
}

TEST_F(PageStatesTest, EveryActionInEveryState) {
  // Which of the pairs a run takes: all of them, or every n-th. Of a prime number every action and every
  // state comes by.
  const int share = fromEnvironment("QUIVANE_PAGE_STATES", 1);
  std::vector<std::string> failures;
  onProgram([&] {
    int number = 0;
    for (const State& state : pageStates()) {
      bool prepared = false;
      for (const Action& action : pageActions()) {
        if (++number % share != 0) continue;
        // What nothing has changed is the same state still.
        const bool agrees = (prepared || prepare(pages(), state)) && act(pages(), action);
        if (!agrees) failures.push_back(pages().failure);
        prepared = agrees && !pages().hasChanged();
        pages().trail = state.name;
        PromptAnswers::takeBoxes();
      }
    }
  });
  EXPECT_TRUE(failures.empty()) << told(failures);
}

TEST_F(PageStatesTest, RandomWalks) {
  const int walkCount = fromEnvironment("QUIVANE_PAGE_WALKS", 8);
  std::mt19937 random(static_cast<std::mt19937::result_type>(fromEnvironment("QUIVANE_PAGE_SEED", 20260131)));
  std::vector<std::string> failures;
  onProgram([&] {
    for (int walk = 0; walk < walkCount; ++walk) {
      const State& state = pageStates()[random() % pageStates().size()];
      bool agrees = prepare(pages(), state);
      for (int step = 0; agrees && step < 25; ++step)
        agrees = act(pages(), pageActions()[random() % pageActions().size()]);
      if (!agrees) failures.push_back(pages().failure);
      PromptAnswers::takeBoxes();
    }
  });
  EXPECT_TRUE(failures.empty()) << told(failures);
}

TEST_F(PageStatesTest, AFailedOpeningAndACancelledNewLeaveThePageAndItsTab) {
  std::string failure;
  onProgram([&] {
    for (const int page : {kTables, kForm, kList, kQueries}) {
      for (void (*const fails)(Pages&) : {openMissing, cancelNew}) {
        pages().open(Pages::kMany);
        pages().showPage(page);
        pages().trail = "page " + std::to_string(page);
        fails(pages());
        if (!pages().agrees()) failure += pages().failure;
      }
    }
  });
  EXPECT_EQ(failure, "");
}

TEST_F(PageStatesTest, TheFormIsLaidOutAnewAfterOpenAlsoWhenItWasCancelled) {
  ControlPlace before{};
  ControlPlace moved{};
  ControlPlace after{};
  onProgram([&] {
    pages().open(Pages::kMany);
    pages().useTable(Pages::kWideTable);
    pages().showPage(kForm);
    const HWND editor = GetDlgItem(formWrapperWindow, kFirstTextEditorId);
    before = placeOf(editor);
    SetWindowPos(editor, nullptr, 0, 200, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    moved = placeOf(editor);
    cancelOpen(pages());
    after = placeOf(editor);
  });
  EXPECT_NE(moved.y, before.y);
  EXPECT_EQ(after.y, before.y);
  EXPECT_EQ(after.x, before.x);
}

}  // namespace
