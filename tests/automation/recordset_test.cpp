#include <filesystem>
#include <limits>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// Opening, closing, moving and reading. Changing is in recordset_change_test.cpp.

namespace automationtest {
namespace {

class Recordset : public AutomationTest {
 protected:
  Recordset() {
    SqliteFile(path_).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('a'), ('b'), ('c'), ('d')");
  }

  ComPtr<IAdoceRecordset> records(long cursorType = kKeyset, long lockType = kOptimistic) {
    return recordsOf(connection_.get(), L"Select * from [T]", cursorType, lockType);
  }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
};

TEST_F(Recordset, BeginsClosed) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(stateOf(recordset.get()), 0);
  long number = 17;
  VARIANT_BOOL flag = 17;
  OwnedVariant value;
  ComPtr<IAdoceRecordset> copy;
  EXPECT_EQ(recordset->Close(), objectModelError(3704));
  EXPECT_EQ(recordset->MoveFirst(), objectModelError(3704));
  EXPECT_EQ(recordset->MoveLast(), objectModelError(3704));
  EXPECT_EQ(recordset->MovePrevious(), objectModelError(3704));
  EXPECT_EQ(move(recordset.get(), 1, 0), objectModelError(3704));
  EXPECT_EQ(addNew(recordset.get()), objectModelError(3704));
  EXPECT_EQ(update(recordset.get()), objectModelError(3704));
  EXPECT_EQ(recordset->CancelUpdate(), objectModelError(3704));
  EXPECT_EQ(recordset->Delete(1), objectModelError(3704));
  EXPECT_EQ(recordset->get_RecordCount(&number), objectModelError(3704));
  EXPECT_EQ(recordset->get_AbsolutePosition(&number), objectModelError(3704));
  EXPECT_EQ(recordset->put_AbsolutePosition(1), objectModelError(3704));
  EXPECT_EQ(recordset->ReadAhead(1, 1), objectModelError(3704));
  EXPECT_EQ(recordset->get_EditMode(&number), objectModelError(3704));
  EXPECT_EQ(recordset->get_BOF(&flag), objectModelError(3704));
  EXPECT_EQ(recordset->get_EOF(&flag), objectModelError(3704));
  EXPECT_EQ(recordset->get_Bookmark(value.get()), objectModelError(3704));
  EXPECT_EQ(recordset->put_Bookmark(*bytes("x")), objectModelError(3704));
  EXPECT_EQ(recordset->Supports(0, &flag), objectModelError(3704));
  EXPECT_EQ(recordset->Clone(copy.put()), objectModelError(3704));
  EXPECT_EQ(recordset->GetRows(-1, *empty(), *empty(), value.get()), objectModelError(3704));
  EXPECT_EQ(number, 17);
  EXPECT_EQ(flag, 17);
}

TEST_F(Recordset, OpensOnTheFirstRecordAndKnowsItsCount) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(stateOf(recordset.get()), 1);
  EXPECT_EQ(recordCount(recordset.get()), 4);
  EXPECT_EQ(position(recordset.get()), 1);
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
  EXPECT_FALSE(isBof(recordset.get()));
  EXPECT_FALSE(isEof(recordset.get()));
}

TEST_F(Recordset, OfNothingStandsBeforeAndBehindItsRecords) {
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), L"SELECT * FROM T WHERE Name = 'z'");
  EXPECT_EQ(recordCount(recordset.get()), 0);
  EXPECT_TRUE(isBof(recordset.get()));
  EXPECT_TRUE(isEof(recordset.get()));
  EXPECT_EQ(recordset->MoveFirst(), objectModelError(3021));
  EXPECT_EQ(recordset->MoveLast(), objectModelError(3021));
  EXPECT_EQ(recordset->MoveNext(), objectModelError(3021));
  EXPECT_EQ(recordset->MovePrevious(), objectModelError(3021));
}

TEST_F(Recordset, LivesAgainAfterClose) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  for (const wchar_t* source :
       {L"Select * from [T]", L"SELECT count(*) FROM T", L"T", L"Select * from [T]"}) {
    ASSERT_EQ(openOn(recordset.get(), connection_.get(), source, kKeyset, kOptimistic, kUnknown), S_OK);
    EXPECT_EQ(recordset->MoveLast(), S_OK);
    ASSERT_EQ(recordset->Close(), S_OK);
    EXPECT_EQ(stateOf(recordset.get()), 0);
  }
}

TEST_F(Recordset, OpenWhileOpenIsRefused) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(openOn(recordset.get(), connection_.get(), L"Select * from [T]"), objectModelError(3705));
  EXPECT_EQ(recordset->put_Source(text(L"x").get()), objectModelError(3705));
  EXPECT_EQ(recordset->put_CursorType(0), objectModelError(3705));
  EXPECT_EQ(recordset->put_LockType(1), objectModelError(3705));
  EXPECT_EQ(recordset->put_ActiveConnection(*empty()), objectModelError(3705));
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
}

TEST_F(Recordset, TakesItsConnectionInEveryForm) {
  IAdoceConnection* raw = connection_.get();
  IDispatch* dispatch = raw;
  IUnknown* unknown = raw;
  BSTR pathText = text(path_).release();
  const UniqueBstr owner(pathText);
  OwnedVariant object = variant(raw);
  std::vector<VARIANT> forms(8);
  forms[0] = *object;
  V_VT(&forms[1]) = VT_UNKNOWN;
  V_UNKNOWN(&forms[1]) = unknown;
  V_VT(&forms[2]) = VT_BYREF | VT_DISPATCH;
  V_DISPATCHREF(&forms[2]) = &dispatch;
  V_VT(&forms[3]) = VT_BYREF | VT_UNKNOWN;
  V_UNKNOWNREF(&forms[3]) = &unknown;
  V_VT(&forms[4]) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&forms[4]) = object.get();
  V_VT(&forms[5]) = VT_BSTR;
  V_BSTR(&forms[5]) = pathText;
  V_VT(&forms[6]) = VT_BYREF | VT_BSTR;
  V_BSTRREF(&forms[6]) = &pathText;
  forms[7] = *object;
  for (const VARIANT& form : forms) {
    const ComPtr<IAdoceRecordset> recordset = newRecordset();
    ASSERT_EQ(recordset->Open(*variant(L"Select * from [T]"), form, kKeyset, kOptimistic, kText), S_OK)
        << V_VT(&form);
    EXPECT_EQ(recordCount(recordset.get()), 4);
    ASSERT_EQ(recordset->Close(), S_OK);
    // Again by the property.
    ASSERT_EQ(recordset->put_ActiveConnection(form), S_OK);
    ASSERT_EQ(recordset->Open(*variant(L"Select * from [T]"), *missing(), kKeyset, kOptimistic, kText), S_OK);
    ASSERT_EQ(recordset->Close(), S_OK);
    // And once more, with the connection it has.
    ASSERT_EQ(recordset->Open(*variant(L"Select * from [T]"), *empty(), kKeyset, kOptimistic, kText), S_OK);
    EXPECT_EQ(recordCount(recordset.get()), 4);
  }
}

TEST_F(Recordset, OwnConnectionIsClosedWithIt) {
  connection_ = {};
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  ASSERT_EQ(recordset->Open(*variant(L"T"), *variant(L"Data Source=" + path_), kKeyset, kOptimistic, kTable),
            S_OK);
  EXPECT_EQ(recordCount(recordset.get()), 4);
  ASSERT_EQ(recordset->Close(), S_OK);
  EXPECT_TRUE(std::filesystem::remove(path_));
  EXPECT_LT(recordset->Open(*variant(L"T"), *empty(), kKeyset, kOptimistic, kTable), 0);
}

TEST_F(Recordset, OwnConnectionIsClosedWhenTheSourceFails) {
  connection_ = {};
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(recordset->Open(*variant(L"Nowhere"), *variant(path_), kKeyset, kOptimistic, kTable), kNoTable);
  EXPECT_TRUE(std::filesystem::remove(path_));
}

TEST_F(Recordset, WithoutAnOpenConnectionIsRefused) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(recordset->Open(*variant(L"T"), *empty(), kKeyset, kOptimistic, kText), objectModelError(3709));
  EXPECT_EQ(recordset->Open(*variant(L"T"), *variant(static_cast<IDispatch*>(nullptr)), kKeyset, kOptimistic,
                            kText),
            objectModelError(3709));
  EXPECT_EQ(recordset->Open(*variant(L"T"), *variant(recordset.get()), kKeyset, kOptimistic, kText),
            objectModelError(3001));
  EXPECT_EQ(recordset->Open(*variant(L"T"), *variant(5L), kKeyset, kOptimistic, kText),
            objectModelError(3001));
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(openOn(recordset.get(), connection_.get(), L"T", kKeyset, kOptimistic, kTable),
            objectModelError(3709));
}

TEST_F(Recordset, SourceIsTheArgumentOrTheProperty) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(recordset->Open(*variant(5L), *variant(connection_.get()), kKeyset, kOptimistic, kText),
            objectModelError(3001));
  EXPECT_EQ(recordset->Open(*empty(), *variant(connection_.get()), kKeyset, kOptimistic, kText), kNoCommand);
  ASSERT_EQ(recordset->put_Source(text(L"Select * from [T]").get()), S_OK);
  ASSERT_EQ(recordset->Open(*empty(), *variant(connection_.get()), kKeyset, kOptimistic, kText), S_OK);
  UniqueBstr source;
  ASSERT_EQ(recordset->get_Source(source.put()), S_OK);
  EXPECT_EQ(std::wstring(source.get()), L"Select * from [T]");
  ASSERT_EQ(recordset->Close(), S_OK);
  ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"T", kKeyset, kOptimistic, kTable), S_OK);
  UniqueBstr table;
  ASSERT_EQ(recordset->get_Source(table.put()), S_OK);
  EXPECT_EQ(std::wstring(table.get()), L"T");
}

TEST_F(Recordset, OptionsSayWhatTheSourceIs) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  const auto open = [&](const wchar_t* source, long options) {
    recordset->Close();
    return openOn(recordset.get(), connection_.get(), source, kKeyset, kOptimistic, options);
  };
  EXPECT_EQ(open(L"T", kTable), S_OK);
  EXPECT_EQ(open(L"T", kUnknown), S_OK);
  EXPECT_EQ(open(L"Select * from [T]", kUnknown), S_OK);
  EXPECT_EQ(open(L"Select * from [T]", kText), S_OK);
  EXPECT_EQ(open(L"Select * from [T]", kTable), kNoTable);
  EXPECT_EQ(open(L"T", 4), objectModelError(3251));
  EXPECT_EQ(open(L"T", 3), objectModelError(3001));
  EXPECT_EQ(stateOf(recordset.get()), 0);
}

TEST_F(Recordset, OtherCursorAndLockTypesBecomeTheNearest) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  for (const auto& [cursorGiven, lockGiven, cursorTaken, lockTaken] :
       {std::tuple(0L, 1L, 0L, 1L), std::tuple(1L, 3L, 1L, 3L), std::tuple(2L, 3L, 1L, 3L),
        std::tuple(3L, 2L, 1L, 3L), std::tuple(-1L, 4L, 1L, 3L), std::tuple(99L, 0L, 1L, 3L),
        std::tuple(0L, -1L, 0L, 3L)}) {
    ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"Select * from [T]", cursorGiven, lockGiven), S_OK);
    long cursor = -1;
    long lock = -1;
    EXPECT_EQ(recordset->get_CursorType(&cursor), S_OK);
    EXPECT_EQ(recordset->get_LockType(&lock), S_OK);
    EXPECT_EQ(cursor, cursorTaken) << cursorGiven;
    EXPECT_EQ(lock, lockTaken) << lockGiven;
    ASSERT_EQ(recordset->Close(), S_OK);
  }
}

TEST_F(Recordset, ReadOnlySourceDoesNotMakeTheNextOneReadOnly) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"SELECT count(*) FROM T"), S_OK);
  long lock = 0;
  EXPECT_EQ(recordset->get_LockType(&lock), S_OK);
  EXPECT_EQ(lock, kReadOnly);
  ASSERT_EQ(recordset->Close(), S_OK);
  ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"Select * from [T]"), S_OK);
  EXPECT_EQ(recordset->get_LockType(&lock), S_OK);
  EXPECT_EQ(lock, kOptimistic);
}

TEST_F(Recordset, MovesThroughItsRecords) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
  EXPECT_EQ(recordset->MoveLast(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"d");
  EXPECT_EQ(recordset->MovePrevious(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
  EXPECT_EQ(recordset->MoveFirst(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
}

TEST_F(Recordset, EndsAreReachedOnceWithoutError) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(recordset->MovePrevious(), S_OK);
  EXPECT_TRUE(isBof(recordset.get()));
  EXPECT_FALSE(isEof(recordset.get()));
  EXPECT_EQ(described(valueOf(recordset.get(), 0)), "ERROR 800a0bcd");
  EXPECT_EQ(recordset->MovePrevious(), objectModelError(3021));
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");

  EXPECT_EQ(recordset->MoveLast(), S_OK);
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_TRUE(isEof(recordset.get()));
  EXPECT_FALSE(isBof(recordset.get()));
  EXPECT_EQ(recordset->MoveNext(), objectModelError(3021));
  EXPECT_TRUE(isEof(recordset.get()));
  EXPECT_EQ(recordset->MovePrevious(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"d");
}

TEST_F(Recordset, MoveCountsFromCurrentFirstLastOrABookmark) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(move(recordset.get(), 2, 1), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
  OwnedVariant bookmark;
  ASSERT_EQ(recordset->get_Bookmark(bookmark.get()), S_OK);
  EXPECT_EQ(V_VT(bookmark.get()), VT_ARRAY | VT_UI1);
  EXPECT_EQ(move(recordset.get(), -1, 0), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
  EXPECT_EQ(move(recordset.get(), 0, 2), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"d");
  EXPECT_EQ(recordset->Move(-1, *bookmark), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
  EXPECT_EQ(recordset->Move(1, *missing()), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
  EXPECT_EQ(recordset->Move(0, *int16(1)), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
  EXPECT_EQ(recordset->put_Bookmark(*bookmark), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
}

TEST_F(Recordset, MovePastAnEndLandsThere) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(move(recordset.get(), 0x7FFFFFFF, 0), S_OK);
  EXPECT_TRUE(isEof(recordset.get()));
  EXPECT_EQ(move(recordset.get(), 1, 0), objectModelError(3021));
  EXPECT_EQ(move(recordset.get(), -0x7FFFFFFF - 1, 0), S_OK);
  EXPECT_TRUE(isBof(recordset.get()));
  EXPECT_EQ(move(recordset.get(), -1, 0), objectModelError(3021));
}

TEST_F(Recordset, MoveFromNowhereIsRefused) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(move(recordset.get(), 1, 3), objectModelError(3001));
  EXPECT_EQ(move(recordset.get(), 1, -1), objectModelError(3001));
  EXPECT_EQ(recordset->Move(1, *variant(L"1")), objectModelError(3001));
  EXPECT_EQ(recordset->Move(1, *bytes("not a bookmark")), objectModelError(3001));
  EXPECT_EQ(recordset->put_Bookmark(*bytes("")), objectModelError(3001));
  EXPECT_EQ(recordset->put_Bookmark(*variant(1L)), objectModelError(3001));
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
}

TEST_F(Recordset, ReadingAheadMovesNothingAndTakesAnyPlaces) {
  const ComPtr<IAdoceRecordset> recordset = records();
  ASSERT_EQ(S_OK, recordset->put_AbsolutePosition(2));
  constexpr long kLeast = std::numeric_limits<long>::min();
  constexpr long kMost = std::numeric_limits<long>::max();
  for (const long position : {kLeast, -1L, 0L, 1L, 3L, 5L, kMost}) {
    for (const long count : {kLeast, -1L, 0L, 1L, 4L, kMost}) {
      EXPECT_EQ(S_OK, recordset->ReadAhead(position, count)) << position << ", " << count;
    }
  }
  long position = 0;
  EXPECT_EQ(S_OK, recordset->get_AbsolutePosition(&position));
  EXPECT_EQ(2, position);
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
}

TEST_F(Recordset, AbsolutePositionIsReadAndSet) {
  const ComPtr<IAdoceRecordset> recordset = records();
  EXPECT_EQ(recordset->put_AbsolutePosition(3), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
  EXPECT_EQ(position(recordset.get()), 3);
  EXPECT_EQ(recordset->put_AbsolutePosition(0), objectModelError(3001));
  EXPECT_EQ(recordset->put_AbsolutePosition(5), objectModelError(3001));
  EXPECT_EQ(position(recordset.get()), 3);
  EXPECT_EQ(recordset->MoveLast(), S_OK);
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(position(recordset.get()), -3);
}

TEST_F(Recordset, ForwardOnlyDoesNotMoveBack) {
  const ComPtr<IAdoceRecordset> recordset = records(kForwardOnly, kReadOnly);
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(recordset->MovePrevious(), objectModelError(3219));
  EXPECT_EQ(recordset->MoveLast(), objectModelError(3219));
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
}

TEST_F(Recordset, SupportsWhatItsTypesAllow) {
  const auto supports = [](IAdoceRecordset* recordset, long option) {
    VARIANT_BOOL supported = 17;
    EXPECT_EQ(recordset->Supports(option, &supported), S_OK);
    return supported == VARIANT_TRUE;
  };
  constexpr long kAddNew = 0x1000400;
  constexpr long kDelete = 0x1000800;
  constexpr long kUpdate = 0x1008000;
  constexpr long kMovePrevious = 0x200;
  constexpr long kBookmark = 0x2000;
  constexpr long kPosition = 0x4000;
  constexpr long kFind = 0x80000;
  const ComPtr<IAdoceRecordset> updatable = records();
  const ComPtr<IAdoceRecordset> readOnly = records(kKeyset, kReadOnly);
  const ComPtr<IAdoceRecordset> forwardOnly = records(kForwardOnly, kOptimistic);
  for (const long option : {kAddNew, kDelete, kUpdate, kAddNew | kDelete}) {
    EXPECT_TRUE(supports(updatable.get(), option)) << option;
    EXPECT_FALSE(supports(readOnly.get(), option)) << option;
    EXPECT_TRUE(supports(forwardOnly.get(), option)) << option;
  }
  for (const long option : {kMovePrevious, kBookmark, kPosition}) {
    EXPECT_TRUE(supports(updatable.get(), option)) << option;
    EXPECT_TRUE(supports(readOnly.get(), option)) << option;
    EXPECT_FALSE(supports(forwardOnly.get(), option)) << option;
  }
  EXPECT_FALSE(supports(updatable.get(), kFind));
  EXPECT_FALSE(supports(updatable.get(), kFind | kBookmark));
}

TEST_F(Recordset, CloneStandsForItself) {
  const ComPtr<IAdoceRecordset> recordset = records();
  ASSERT_EQ(recordset->MoveLast(), S_OK);
  ComPtr<IAdoceRecordset> copy;
  ASSERT_EQ(recordset->Clone(copy.put()), S_OK);
  EXPECT_EQ(textOf(copy.get(), 0), L"a");
  EXPECT_EQ(textOf(recordset.get(), 0), L"d");
  OwnedVariant bookmark;
  ASSERT_EQ(recordset->get_Bookmark(bookmark.get()), S_OK);
  ASSERT_EQ(copy->put_Bookmark(*bookmark), S_OK);
  EXPECT_EQ(textOf(copy.get(), 0), L"d");
  ASSERT_EQ(recordset->Close(), S_OK);
  EXPECT_EQ(copy->MoveFirst(), S_OK);
  EXPECT_EQ(textOf(copy.get(), 0), L"a");
}

TEST_F(Recordset, DoesNotFollowWhatOthersAdd) {
  const ComPtr<IAdoceRecordset> recordset = records();
  SqliteFile(path_).run("INSERT INTO T VALUES ('e')");
  EXPECT_EQ(recordCount(recordset.get()), 4);
  EXPECT_EQ(recordset->MoveLast(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"d");
}

TEST_F(Recordset, RecordThatAnotherDeletedIsMissing) {
  const ComPtr<IAdoceRecordset> recordset = records();
  SqliteFile(path_).run("DELETE FROM T WHERE Name = 'b'");
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(described(valueOf(recordset.get(), 0)), "ERROR 800a0bcd");
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
}

class GetRows : public Recordset {
 protected:
  GetRows() { SqliteFile(path_).run("ALTER TABLE T ADD COLUMN N INTEGER; UPDATE T SET N = rowid * 10"); }

  /// All elements, record by record.
  std::vector<std::string> elementsOf(const OwnedVariant& rows, LONG columnCount, LONG rowCount) {
    std::vector<std::string> elements;
    EXPECT_EQ(V_VT(&*rows), VT_ARRAY | VT_VARIANT);
    if (V_VT(&*rows) != (VT_ARRAY | VT_VARIANT)) return elements;
    LONG bound = -1;
    EXPECT_EQ(SafeArrayGetDim(V_ARRAY(&*rows)), 2u);
    EXPECT_EQ(SafeArrayGetUBound(V_ARRAY(&*rows), 1, &bound), S_OK);
    EXPECT_EQ(bound, columnCount - 1);
    EXPECT_EQ(SafeArrayGetUBound(V_ARRAY(&*rows), 2, &bound), S_OK);
    EXPECT_EQ(bound, rowCount - 1);
    for (LONG row = 0; row < rowCount; ++row) {
      for (LONG column = 0; column < columnCount; ++column) {
        LONG indices[] = {column, row};
        OwnedVariant element;
        EXPECT_EQ(SafeArrayGetElement(V_ARRAY(&*rows), indices, element.get()), S_OK);
        elements.push_back(described(element));
      }
    }
    return elements;
  }
};

TEST_F(GetRows, ReturnsFieldsByRecords) {
  const ComPtr<IAdoceRecordset> recordset = records();
  OwnedVariant rows;
  ASSERT_EQ(recordset->GetRows(-1, *missing(), *missing(), rows.get()), S_OK);
  EXPECT_THAT(elementsOf(rows, 2, 4), testing::ElementsAre("BSTR a", "I4 10", "BSTR b", "I4 20", "BSTR c",
                                                           "I4 30", "BSTR d", "I4 40"));
  EXPECT_TRUE(isEof(recordset.get()));
  OwnedVariant none;
  EXPECT_EQ(recordset->GetRows(-1, *missing(), *missing(), none.get()), objectModelError(3021));
  EXPECT_EQ(described(none), "EMPTY");
}

TEST_F(GetRows, StopsBehindTheNumberAskedFor) {
  const ComPtr<IAdoceRecordset> recordset = records();
  OwnedVariant rows;
  ASSERT_EQ(recordset->GetRows(2, *missing(), *missing(), rows.get()), S_OK);
  EXPECT_THAT(elementsOf(rows, 2, 2), testing::ElementsAre("BSTR a", "I4 10", "BSTR b", "I4 20"));
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
}

TEST_F(GetRows, StartsWhereToldAndTakesTheFieldsNamed) {
  const ComPtr<IAdoceRecordset> recordset = records();
  OwnedVariant rows;
  ASSERT_EQ(recordset->GetRows(9, *variant(2L), *variant(L"N"), rows.get()), S_OK);
  EXPECT_THAT(elementsOf(rows, 1, 1), testing::ElementsAre("I4 40"));
  std::vector<OwnedVariant> names;
  names.push_back(variant(L"N"));
  names.push_back(variant(0L));
  OwnedVariant both;
  ASSERT_EQ(recordset->GetRows(1, *variant(1L), *list(std::move(names)), both.get()), S_OK);
  EXPECT_THAT(elementsOf(both, 2, 1), testing::ElementsAre("I4 10", "BSTR a"));
}

TEST_F(GetRows, RefusesWhatItDoesNotKnow) {
  const ComPtr<IAdoceRecordset> recordset = records();
  OwnedVariant rows;
  EXPECT_EQ(recordset->GetRows(-2, *missing(), *missing(), rows.get()), objectModelError(3001));
  EXPECT_EQ(recordset->GetRows(0, *missing(), *missing(), rows.get()), objectModelError(3001));
  EXPECT_EQ(recordset->GetRows(1, *missing(), *variant(L"X"), rows.get()), objectModelError(3265));
  EXPECT_EQ(recordset->GetRows(1, *variant(9L), *missing(), rows.get()), objectModelError(3001));
  EXPECT_EQ(described(rows), "EMPTY");
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
}

}  // namespace
}  // namespace automationtest
