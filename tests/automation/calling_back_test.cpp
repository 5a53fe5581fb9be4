#include <utility>

#include "tests/automation/scripts/script_function.h"
#include "tests/automation/support/automation_test.h"

namespace automationtest {
namespace {

/// A script's object which, when it is asked for its value, closes a recordset and then gives one.
class ClosingObject final : public ScriptFunction {
 public:
  ClosingObject(IAdoceRecordset* recordset, OwnedVariant value)
      : ScriptFunction([this, recordset](const DISPPARAMS&) {
          EXPECT_EQ(recordset->Close(), S_OK);
          return std::move(value_);
        }),
        value_(std::move(value)) {}

  bool wasAsked() const { return callCount() > 0; }

 private:
  OwnedVariant value_;
};

/// Each call asks an object for its value in the middle of its work.
class CallingBack : public AutomationTest {
 protected:
  CallingBack() {
    EXPECT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (N Integer)"), S_OK);
    EXPECT_EQ(execute(connection_.get(), L"INSERT INTO T VALUES (1), (2)"), S_OK);
    EXPECT_EQ(openOn(records_.get(), connection_.get(), L"Select * from [T]"), S_OK);
  }

  void expectNothingChanged() {
    EXPECT_EQ(stateOf(records_.get()), 0);
    EXPECT_THAT(columnTexts(recordsOf(connection_.get(), L"Select * from [T]").get(), 0),
                testing::ElementsAre(L"1", L"2"));
  }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
  ComPtr<IAdoceRecordset> records_ = newRecordset();
};

TEST_F(CallingBack, AFieldsValueThatClosesTheRecordsetIsNotWritten) {
  ClosingObject five(records_.get(), variant(5L));
  EXPECT_EQ(fieldOf(records_.get(), 0L)->put_Value(*five.asVariant()), objectModelError(3704));
  EXPECT_TRUE(five.wasAsked());
  expectNothingChanged();
}

TEST_F(CallingBack, AFieldThatIsFoundByAnObjectThatClosesTheRecordsetIsNone) {
  ComPtr<IAdoceFields> fields;
  ComPtr<IAdoceField> field;
  ASSERT_EQ(records_->get_Fields(fields.put()), S_OK);
  ClosingObject zero(records_.get(), variant(0L));
  EXPECT_EQ(fields->get_Item(*zero.asVariant(), field.put()), objectModelError(3704));
  EXPECT_TRUE(zero.wasAsked());
}

TEST_F(CallingBack, AddNewWithAValueThatClosesTheRecordsetAddsNothing) {
  ClosingObject five(records_.get(), variant(5L));
  EXPECT_EQ(records_->AddNew(*variant(L"N"), *five.asVariant()), objectModelError(3704));
  EXPECT_TRUE(five.wasAsked());
  expectNothingChanged();
}

TEST_F(CallingBack, AddNewWithANameThatClosesTheRecordsetAddsNothing) {
  ClosingObject name(records_.get(), variant(L"N"));
  EXPECT_EQ(records_->AddNew(*name.asVariant(), *variant(5L)), objectModelError(3704));
  EXPECT_TRUE(name.wasAsked());
  expectNothingChanged();
}

TEST_F(CallingBack, UpdateWithAValueThatClosesTheRecordsetChangesNothing) {
  ClosingObject five(records_.get(), variant(5L));
  EXPECT_EQ(records_->Update(*variant(L"N"), *five.asVariant()), objectModelError(3704));
  EXPECT_TRUE(five.wasAsked());
  expectNothingChanged();
}

TEST_F(CallingBack, AMoveFromAnObjectThatClosesTheRecordsetFails) {
  ClosingObject first(records_.get(), variant(1L));
  EXPECT_EQ(records_->Move(1, *first.asVariant()), objectModelError(3704));
  EXPECT_TRUE(first.wasAsked());
}

TEST_F(CallingBack, ABookmarkThatClosesTheRecordsetLeadsNowhere) {
  OwnedVariant bookmark;
  ASSERT_EQ(records_->get_Bookmark(bookmark.get()), S_OK);
  ClosingObject closing(records_.get(), std::move(bookmark));
  EXPECT_EQ(records_->put_Bookmark(*closing.asVariant()), objectModelError(3704));
  EXPECT_TRUE(closing.wasAsked());
}

TEST_F(CallingBack, GetRowsByObjectsThatCloseTheRecordsetReadsNothing) {
  OwnedVariant rows;
  ClosingObject first(records_.get(), variant(1L));
  EXPECT_EQ(records_->GetRows(1, *first.asVariant(), *missing(), rows.get()), objectModelError(3704));
  EXPECT_TRUE(first.wasAsked());

  ASSERT_EQ(openOn(records_.get(), connection_.get(), L"Select * from [T]"), S_OK);
  ClosingObject name(records_.get(), variant(L"N"));
  EXPECT_EQ(records_->GetRows(1, *missing(), *name.asVariant(), rows.get()), objectModelError(3704));
  EXPECT_TRUE(name.wasAsked());
  EXPECT_EQ(described(rows), "EMPTY");
}

}  // namespace
}  // namespace automationtest
