#include "platform/store/exchange/import_plan.h"

#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

class ImportPlanTest : public ExchangeTest {
 protected:
  /// "source>target type" of each column.
  std::string columns() const {
    std::string text;
    for (const PlannedColumn& column : plan_.columns) {
      if (!text.empty()) text += ", ";
      text += column.source + ">" + column.target + " " + column.declaredType;
    }
    return text;
  }
  std::string planOf(const std::string& file) {
    const Status status = tryPlan(file);
    return status ? columns() : "!" + status.message();
  }
};

TEST_F(ImportPlanTest, TypesComeFromAllRows) {
  open();
  EXPECT_EQ(planOf("id,price,zip,day,ok,at,big\n1,1.5,007,2001-03-09,true,2001-03-09 10:00,5000000000\n"
                   "2,2,12,2001-03-10,false,2001-03-09,1\n"),
            "id>id Integer, price>price Float, zip>zip Text, day>day Date, ok>ok Bit, at>at Datetime, "
            "big>big Bigint");
  std::string file = "n,m\n";
  for (int row = 0; row < 20'000; ++row) file += "1,2\n";
  EXPECT_EQ(planOf(file), "n>n Integer, m>m Integer");
  EXPECT_EQ(planOf(file + "x,2\n"), "n>n Text, m>m Integer");
}

TEST_F(ImportPlanTest, AHeaderIsMadeOfDifferentTexts) {
  open();
  EXPECT_EQ(planOf("a,b\n1,2\n"), "a>a Integer, b>b Integer");
  EXPECT_TRUE(plan_.csv.hasHeader);
  EXPECT_EQ(planOf("1,2\n3,4\n"), "Field1>Field1 Integer, Field2>Field2 Integer");
  EXPECT_FALSE(plan_.csv.hasHeader);
  EXPECT_EQ(planOf("x,x\n3,4\n"), "Field1>Field1 Text, Field2>Field2 Text");
  EXPECT_EQ(planOf(",\n3,4\n"), "Field1>Field1 Integer, Field2>Field2 Integer");
}

TEST_F(ImportPlanTest, ARecordThatBeginsLikeANumberIsNoHeader) {
  open();
  EXPECT_EQ(planOf("Ann,007\nBob,8\n"), "Field1>Field1 Text, Field2>Field2 Text");
  EXPECT_EQ(planOf("01/02/2003,x\n02/02/2003,y\n"), "Field1>Field1 Text, Field2>Field2 Text");
  EXPECT_EQ(planOf("Ann,-x\nBob,8\n"), "Ann>Ann Text, -x>x Integer");
}

TEST_F(ImportPlanTest, IntoATableNoRecordIsTakenForNamesWithoutAReason) {
  prepare("CREATE TABLE T (Name TEXT, Town TEXT)");
  open();
  EXPECT_EQ(planOf("Ann,Berlin\nBob,Rome\n"), "Field1>Name TEXT, Field2>Town TEXT");
  EXPECT_EQ(planOf("Ann,Berlin\n"), "Field1>Name TEXT, Field2>Town TEXT");
  EXPECT_EQ(planOf("Ann,town\nBob,Rome\n"),
            "!The table has no column called \"Ann\" that takes values; the file has one.");
  EXPECT_EQ(planOf("who,when\nBob,2001-03-09\n"), "who>Name TEXT, when>Town TEXT");
  options_.map = {{"who", "Town"}};
  EXPECT_EQ(planOf("who\nRome\n"), "who>Town TEXT");
}

TEST_F(ImportPlanTest, TheFirstRecordCountsWhereThereIsNoHeader) {
  open();
  options_.hasHeader = false;
  EXPECT_EQ(planOf("x,2\n3,4\n"), "Field1>Field1 Text, Field2>Field2 Integer");
  options_.hasHeader = true;
  EXPECT_EQ(planOf("1,2\n3,4\n"), "1>1 Integer, 2>2 Integer");
}

TEST_F(ImportPlanTest, WhatIsChosenIsNotFoundOut) {
  open();
  options_.separator = ';';
  options_.encoding = Encoding::windows1252;
  options_.types = {{"A", "Varchar (20)"}};
  EXPECT_EQ(planOf("a;b,c\n1;2\n"), "a>a Varchar (20), b,c>b,c Integer");
  EXPECT_EQ(plan_.encoding, Encoding::windows1252);
}

TEST_F(ImportPlanTest, NamesAreMadeValidAndShown) {
  open();
  options_.hasHeader = true;
  EXPECT_EQ(planOf("a.b,A.B,,[x]\n1,2,3,4\n"),
            "a.b>a_b Integer, A.B>A_B 2 Integer, >Field3 Integer, [x]>x_ Integer");
}

TEST_F(ImportPlanTest, ColumnsCanBeRenamedAndLeftOut) {
  open();
  options_.map = {{"a", "First"}};
  options_.skipped = {"b"};
  EXPECT_EQ(planOf("a,b,c\n1,2,3\n"), "a>First Integer, c>c Integer");
  EXPECT_EQ(plan_.createStatement(), "CREATE TABLE \"T\" (\"First\" Integer, \"c\" Integer)");
}

TEST_F(ImportPlanTest, AnExistingTableIsMatchedByName) {
  prepare("CREATE TABLE T (Name TEXT, Age INTEGER, Born DATE)");
  open();
  EXPECT_EQ(planOf("born,NAME\n2001-03-09,x\n"), "born>Born DATE, NAME>Name TEXT");
}

TEST_F(ImportPlanTest, OrByOrderWhereNoNameIsKnown) {
  prepare("CREATE TABLE T (Name TEXT, Twice AS (Age * 2), Age INTEGER)");
  open();
  EXPECT_EQ(planOf("x,y\na,1\n"), "x>Name TEXT, y>Age INTEGER");
  options_.hasHeader = false;
  EXPECT_EQ(planOf("a,1\n"), "Field1>Name TEXT, Field2>Age INTEGER");
  EXPECT_EQ(planOf("a,1,2\n"), "!The file has more columns than the table.");
}

TEST_F(ImportPlanTest, AColumnWithoutAPlaceIsNotDroppedSilently) {
  prepare("CREATE TABLE T (Name TEXT, Age INTEGER)");
  open();
  EXPECT_EQ(planOf("Name,City\na,b\n"),
            "!The table has no column called \"City\" that takes values; the file has one.");
  options_.skipped = {"City"};
  EXPECT_EQ(planOf("Name,City\na,b\n"), "Name>Name TEXT");
  options_.skipped.clear();
  options_.map = {{"City", "Age"}};
  EXPECT_EQ(planOf("Name,City\na,b\n"), "Name>Name TEXT, City>Age INTEGER");
  options_.map = {{"City", "Name"}};
  EXPECT_EQ(planOf("Name,City\na,b\n"), "!Two columns of the file are for Name.");
}

TEST_F(ImportPlanTest, ChoicesThatNameNothingAreTold) {
  open();
  options_.types = {{"z", "Integer"}};
  EXPECT_EQ(planOf("a,b\n1,2\n"), "!The file has no column called \"z\".");
  options_.types = {{"a", "Integer, x Text); DROP TABLE Books; --"}};
  EXPECT_EQ(planOf("a,b\n1,2\n"), "!\"Integer, x Text); DROP TABLE Books; --\" is no type.");
}

TEST_F(ImportPlanTest, ATypeThatNobodyKnowsIsTold) {
  open();
  for (const char* type : {"Klingon", "Intger", "Text, b Text", "Text Text"}) {
    options_.types = {{"a", type}};
    EXPECT_TRUE(planOf("a,b\n1,2\n").starts_with("!The type \"" + std::string(type) + "\" is not known. "))
        << type;
  }
  for (const char* type : {"integer", "Varchar (10)", "decimal(10,2)", "Long  Varbinary", "memo", "BYTEA"}) {
    options_.types = {{"a", type}};
    EXPECT_EQ(planOf("a,b\n1,2\n"), "a>a " + std::string(type) + ", b>b Integer");
  }
}

TEST_F(ImportPlanTest, WhatKeepsTheFileFromBeingUtf8IsTold) {
  open();
  EXPECT_EQ(planOf("a,b\n1,2\nM\xFC,3\n"), "a>a Text, b>b Integer");
  EXPECT_EQ(plan_.encoding, Encoding::windows1252);
  EXPECT_EQ(plan_.notUtf8.line, 3);
  EXPECT_EQ(plan_.notUtf8.offset, 9);
  options_.encoding = Encoding::windows1252;
  EXPECT_EQ(planOf("a\nM\xFC\n"), "a>a Text");
  EXPECT_EQ(plan_.notUtf8.line, 0);
}

TEST_F(ImportPlanTest, TheTableIsNewOrThereAsTheUserSays) {
  prepare("CREATE TABLE Books (a); CREATE VIEW V AS SELECT 1 AS a");
  open();
  options_.table = "Books";
  options_.target = ImportOptions::Target::newTable;
  EXPECT_EQ(tryPlan("a\n1\n").code(), ErrorCode::tableExists);
  options_.table = "Other";
  options_.target = ImportOptions::Target::existingTable;
  EXPECT_EQ(tryPlan("a\n1\n").code(), ErrorCode::noTable);
  options_.target = ImportOptions::Target::any;
  options_.table = "V";
  EXPECT_EQ(tryPlan("a\n1\n").code(), ErrorCode::readOnly);
  options_.table = "a[b";
  EXPECT_EQ(tryPlan("a\n1\n").code(), ErrorCode::invalidArgument);
  options_.table = "MSysTables";
  EXPECT_FALSE(tryPlan("a\n1\n"));
}

TEST_F(ImportPlanTest, AnEmptyFileHasNoColumns) {
  open();
  EXPECT_EQ(planOf(""), "!There are no columns in the file.");
  EXPECT_EQ(planOf("[]"), "!There are no columns in the file.");
}

TEST_F(ImportPlanTest, AKeyMustBeKnownAndGiven) {
  prepare("CREATE TABLE T (Id INTEGER PRIMARY KEY, Name TEXT); CREATE TABLE NoKey (Name TEXT)");
  open();
  options_.replaces = true;
  EXPECT_EQ(planOf("id,name\n1,a\n"), "id>Id INTEGER, name>Name TEXT");
  EXPECT_EQ(plan_.keyColumns, std::vector<std::string>{"Id"});
  EXPECT_EQ(planOf("name\na\n"), "!The file has no values for the key Id.");
  options_.table = "NoKey";
  EXPECT_EQ(planOf("name\na\n"), "!The table has no primary key: say which columns are the key.");
  options_.table = "Fresh";
  EXPECT_FALSE(tryPlan("name\na\n"));
}

TEST_F(ImportPlanTest, LookingThroughTheFileCanBeCancelled) {
  open();
  observer_.cancels = true;
  std::string file = "a,b\n";
  for (int row = 0; row < 3000; ++row) file += "1,2\n";
  EXPECT_EQ(tryPlan(file).message(), "The import was cancelled. Nothing was changed.");
}

}  // namespace
}  // namespace store::exchange
