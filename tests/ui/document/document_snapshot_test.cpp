// What the form shows is what was read, and what is stored or deleted is what the form shows: beside
// programs that change, delete, lock and rebuild at the same time.
#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr wchar_t kChangedElsewhere[] = L"Another program has changed the record since it was read.";

class DocumentSnapshotTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    runStatements(
        path(),
        {L"CREATE TABLE 'People' (name Text, town Text)", L"INSERT INTO People VALUES ('Ada', 'London')",
         L"INSERT INTO People VALUES ('Grace', 'New York')", L"INSERT INTO People VALUES ('Kurt', 'Brno')",
         L"INSERT INTO People VALUES ('Emmy', 'Erlangen')"});
    open();
    document().openTableSelection(3);
    document().setViewMode(ViewMode::form);
    theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  }

  void elsewhere(const wchar_t* statement) { runStatements(path(), {statement}); }
  void type(std::size_t field, const wchar_t* text) { window().form.fields.at(field).content = text; }
  std::wstring shown(std::size_t field) { return window().form.fields.at(field).content; }
  void expectNothingRead() {
    EXPECT_EQ(window().sight(), "form: a record that can't be read");
    for (const FakeFieldEditor& field : window().form.fields) EXPECT_EQ(field.shown, L"");
  }
  /// All that the file holds, as another program reads it.
  std::wstring file() { return stored(L"Select group_concat(name || ' ' || town, ', ') from People").at(0); }
  std::vector<std::wstring> takeTexts() { return window().prompts.takeTexts(); }
  void find(const wchar_t* text) {
    window().prompts.setFind = [=](FindState& state) {
      state.text = text;
      state.checkAllFields = 1;
    };
    document().openFind();
  }
};

constexpr wchar_t kAsMade[] = L"Ada London, Grace New York, Kurt Brno, Emmy Erlangen";

// ---- The reading behind the form is the guard, on every way

TEST_F(DocumentSnapshotTest, AChangeOfWhatAnotherProgramChangedIsRefused) {
  elsewhere(L"UPDATE People SET town = 'Paris' WHERE name = 'Ada'");
  type(0, L"Ada L.");
  window().prompts.agrees = false;
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(HasSubstr(kChangedElsewhere)));
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(shown(0), L"Ada L.") << "what was typed is kept";
  EXPECT_THAT(file(), StartsWith(L"Ada Paris,"));
  window().prompts.agrees = true;
  document().moveNextRecord();
  EXPECT_EQ(shown(0), L"Grace");
  document().movePreviousRecord();
  EXPECT_EQ(shown(1), L"Paris");
}

TEST_F(DocumentSnapshotTest, AfterASearchTheGuardIsWhatTheFormShows) {
  find(L"grace");
  document().findNext();
  ASSERT_EQ(shown(0), L"Grace");
  elsewhere(L"UPDATE People SET town = 'Paris' WHERE name = 'Grace'");
  type(0, L"Grace H.");
  window().prompts.agrees = false;
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(HasSubstr(kChangedElsewhere)));
  EXPECT_THAT(file(), HasSubstr(L"Grace Paris"));
}

TEST_F(DocumentSnapshotTest, AfterASearchADeletionMeansWhatTheFormShows) {
  find(L"grace");
  document().findNext();
  elsewhere(L"UPDATE People SET town = 'Paris' WHERE name = 'Grace'");
  document().deleteRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(HasSubstr(kChangedElsewhere)));
  EXPECT_THAT(file(), HasSubstr(L"Grace Paris"));
  EXPECT_EQ(shown(1), L"Paris") << "the user sees what he would delete now";
  document().deleteRecord();
  EXPECT_EQ(file(), L"Ada London, Kurt Brno, Emmy Erlangen");
}

TEST_F(DocumentSnapshotTest, OpeningFindWithAChangedFieldReadsWhatWasStored) {
  type(1, L"Oxford");
  find(L"nowhere");
  EXPECT_THAT(window().prompts.findFields, testing::Optional(ElementsAre(L"name", L"town")));
  EXPECT_EQ(window().form.fields.at(1).shown, L"Oxford");
  EXPECT_THAT(file(), StartsWith(L"Ada Oxford,"));
  elsewhere(L"UPDATE People SET town = 'Paris' WHERE name = 'Ada'");
  type(0, L"Ada L.");
  window().prompts.agrees = false;
  EXPECT_FALSE(document().canLeaveRecord());
  EXPECT_THAT(takeTexts(), ElementsAre(HasSubstr(kChangedElsewhere)));
  EXPECT_THAT(file(), StartsWith(L"Ada Paris,"));
}

TEST_F(DocumentSnapshotTest, WhatIsTypedBetweenTwoStepsIsStoredAndTheSearchGoesOnBehindIt) {
  find(L"r");
  document().findNext();
  ASSERT_EQ(shown(0), L"Grace");
  type(1, L"Rome");
  document().findNext();
  EXPECT_EQ(shown(0), L"Kurt");
  EXPECT_THAT(file(), HasSubstr(L"Grace Rome, Kurt"));
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentSnapshotTest, ARefusedNewRecordLeavesTheGuardOfNoOther) {
  document().moveLastRecord();
  elsewhere(L"UPDATE People SET town = 'Paris' WHERE name = 'Emmy'");
  document().newRecord();
  type(0, L"Alan");
  document().deleteRecord();
  EXPECT_EQ(shown(1), L"Paris") << "the record before the new one is read again";
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentSnapshotTest, DeletingWhatAnotherProgramDeletedIsDone) {
  elsewhere(L"DELETE FROM People WHERE name = 'Ada'");
  document().deleteRecord();
  EXPECT_THAT(takeTexts(), IsEmpty());
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(shown(0), L"Grace");
}

TEST_F(DocumentSnapshotTest, ARecordThatIsGoneIsToldOnceAndCanBeDeleted) {
  elsewhere(L"DELETE FROM People WHERE name = 'Grace'");
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(),
              ElementsAre(StartsWith(L"The record could not be read.\nThe record is no longer")));
  expectNothingRead();
  document().commitCurrentRecord();
  EXPECT_TRUE(document().canLeaveRecord());
  EXPECT_THAT(takeTexts(), IsEmpty());
  document().deleteRecord();
  EXPECT_EQ(recordCount, 3u);
  EXPECT_EQ(shown(0), L"Ada");
}

TEST_F(DocumentSnapshotTest, ASearchPassesOverARecordThatIsGone) {
  elsewhere(L"DELETE FROM People WHERE name = 'Grace'");
  find(L"kurt");
  document().findNext();
  EXPECT_EQ(shown(0), L"Kurt");
  EXPECT_THAT(takeTexts(), IsEmpty());
}

// ---- A lock

TEST_F(DocumentSnapshotTest, ALockedRecordIsWaitedForOnceToldOnceAndNeverEmptied) {
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  const auto begun = std::chrono::steady_clock::now();
  document().moveNextRecord();
  const auto waited = std::chrono::steady_clock::now() - begun;
  EXPECT_GT(waited, std::chrono::milliseconds(4500));
  EXPECT_LT(waited, std::chrono::milliseconds(9000)) << "more than one wait for one record";
  EXPECT_THAT(takeTexts(),
              ElementsAre(L"The record could not be read.\nAnother program is using the database."));
  EXPECT_EQ(window().bar.position, L"    2 / 4");
  expectNothingRead();
  lock.reset();
  // Whatever a form might say that stands on nothing that was read.
  window().form.changed = true;
  document().moveNextRecord();
  EXPECT_EQ(shown(0), L"Kurt");
  document().movePreviousRecord();
  EXPECT_EQ(shown(0), L"Grace");
  EXPECT_EQ(file(), kAsMade);
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentSnapshotTest, ALockedRecordCantBeDeletedUnseen) {
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  document().moveNextRecord();
  lock.reset();
  takeTexts();
  document().deleteRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(StartsWith(L"The record could not be deleted.\n")));
  EXPECT_EQ(file(), kAsMade);
}

TEST_F(DocumentSnapshotTest, ASearchIsBrokenOffByALockAndTheFormStays) {
  find(L"kurt");
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  document().findNext();
  EXPECT_THAT(takeTexts(),
              ElementsAre(L"The search could not go on.\nAnother program is using the database."));
  EXPECT_EQ(shown(0), L"Ada");
  lock.reset();
  type(1, L"Oxford");
  document().findNext();
  EXPECT_EQ(shown(0), L"Kurt");
  EXPECT_THAT(file(), StartsWith(L"Ada Oxford, Grace New York"));
}

TEST_F(DocumentSnapshotTest, QueriesBehindALockAreToldOfAndNotTakenForNone) {
  elsewhere(L"CREATE TABLE 'QuivaneQueries' (QueryName Text, SQL Text)");
  elsewhere(L"INSERT INTO QuivaneQueries VALUES ('All', 'Select * from People')");
  document().setViewMode(ViewMode::queries);
  ASSERT_THAT(window().queries->items, ElementsAre(L"All"));
  document().setViewMode(ViewMode::tables);
  takeTexts();
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  document().setViewMode(ViewMode::queries);
  EXPECT_THAT(takeTexts(),
              Contains(L"The queries could not be listed.\nAnother program is using the database."));
  EXPECT_THAT(window().queries->items, ElementsAre(L"All"));
}

// ---- Another structure

TEST_F(DocumentSnapshotTest, AfterARebuildTheRecordsGoOnWithoutAWord) {
  elsewhere(L"CREATE INDEX towns ON People (town)");
  elsewhere(L"VACUUM");
  document().moveNextRecord();
  EXPECT_EQ(shown(0), L"Grace");
  EXPECT_EQ(window().bar.position, L"    2 / 4");
  type(1, L"Rome");
  elsewhere(L"VACUUM");
  document().moveNextRecord();
  EXPECT_EQ(shown(0), L"Kurt");
  EXPECT_THAT(takeTexts(), IsEmpty());
  EXPECT_THAT(file(), HasSubstr(L"Grace Rome"));
}

TEST_F(DocumentSnapshotTest, ARenamedColumnIsToldOnceAndTheTableOpenedAnew) {
  elsewhere(L"ALTER TABLE People RENAME COLUMN town TO city");
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(),
              ElementsAre(L"Another program has changed the structure of the database.\nThe records were "
                          L"opened anew."));
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_STREQ(document().fieldName(1).text(), L"city");
  EXPECT_EQ(shown(1), L"New York");
  EXPECT_EQ(window().bar.position, L"    2 / 4");
}

TEST_F(DocumentSnapshotTest, ADroppedColumnTakesNoOthersPlace) {
  elsewhere(L"ALTER TABLE People DROP COLUMN name");
  type(0, L"Ada L.");
  window().prompts.agrees = false;
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(HasSubstr(L"Do you want to discard what was typed?")));
  EXPECT_EQ(shown(0), L"Ada L.");
  window().prompts.agrees = true;
  document().moveNextRecord();
  EXPECT_EQ(takeTexts().size(), 2u);
  EXPECT_EQ(document().fieldCount(), 1u);
  EXPECT_EQ(shown(0), L"New York");
}

TEST_F(DocumentSnapshotTest, ADroppedTableIsToldOnceAndNothingCanBeTyped) {
  elsewhere(L"DROP TABLE People");
  document().moveNextRecord();
  EXPECT_THAT(takeTexts(), ElementsAre(StartsWith(L"The records can no longer be read.\n")));
  EXPECT_FALSE(document().isRecordsetOpen());
  EXPECT_THAT(window().form.fields, IsEmpty());
  EXPECT_EQ(window().bar.position, L"No Records");
  document().moveNextRecord();
  document().deleteRecord();
  EXPECT_TRUE(document().canLeaveRecord());
  EXPECT_THAT(takeTexts(), IsEmpty());
}

TEST_F(DocumentSnapshotTest, WithoutAllItsRecordsTheFormGoes) {
  elsewhere(L"DELETE FROM People");
  elsewhere(L"VACUUM");
  document().moveNextRecord();
  EXPECT_EQ(window().bar.position, L"No Records");
  EXPECT_EQ(window().sight(), "form: no editors");
  EXPECT_EQ(takeTexts().size(), 1u);
}

// ---- Any order

/// A record in the model: its two fields.
using Person = std::pair<std::wstring, std::wstring>;

TEST_F(DocumentSnapshotTest, WhateverTheOrderTheFileHoldsWhatWasAcknowledged) {
  std::mt19937 random(20010309);
  const auto upTo = [&](unsigned end) { return random() % end; };
  std::vector<Person> model = {
      {L"Ada", L"London"}, {L"Grace", L"New York"}, {L"Kurt", L"Brno"}, {L"Emmy", L"Erlangen"}};
  const auto all = [&] {
    std::wstring text;
    for (const Person& person : model)
      text += (text.empty() ? L"" : L", ") + person.first + L" " + person.second;
    return text;
  };
  // What the form was given when it was loaded, to tell whether the other program came in between.
  std::size_t seen = 0;
  Person read = model[0];
  const auto look = [&] {
    for (seen = 0; seen < model.size() && model[seen].first != shown(0); ++seen) continue;
    ASSERT_LT(seen, model.size()) << "the form shows what the file never held";
    read = model[seen];
    EXPECT_EQ(shown(1), read.second);
  };
  window().prompts.agrees = true;
  for (int step = 0; step < 40; ++step) {
    SCOPED_TRACE(step);
    if (upTo(3) == 0) {
      Person& other = model[upTo(4)];
      other.second = L"e" + std::to_wstring(step);
      elsewhere(
          (L"UPDATE People SET town = '" + other.second + L"' WHERE name = '" + other.first + L"'").c_str());
    }
    const bool isTyped = upTo(2) == 0;
    const std::wstring typed = L"t" + std::to_wstring(step);
    if (isTyped) type(1, typed.c_str());
    const bool isTaken = isTyped && model[seen] == read;
    if (isTaken) model[seen].second = typed;
    switch (upTo(5)) {
      case 0:
        // At the last record Next goes nowhere and leaves nothing.
        currentRecord < recordCount ? document().moveNextRecord() : document().moveFirstRecord();
        break;
      case 1:
        document().movePreviousRecord();
        break;
      case 2:
        find(upTo(2) == 0 ? L"r" : L"zebra");
        document().findNext();
        break;
      case 3:
        document().setViewMode(ViewMode::tables);
        document().setViewMode(ViewMode::form);
        break;
      default:
        document().moveFirstRecord();
        break;
    }
    EXPECT_EQ(file(), all());
    EXPECT_EQ(std::ranges::count_if(takeTexts(),
                                    [](const std::wstring& text) {
                                      return text.find(kChangedElsewhere) != std::wstring::npos;
                                    }),
              isTyped && !isTaken ? 1 : 0);
    look();
    if (HasFatalFailure() || HasNonfatalFailure()) return;
  }
}

}  // namespace
