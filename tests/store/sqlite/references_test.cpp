// The columns to whose values others refer.
#include "platform/store/sqlite/sources/schema_reading.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

class ReferencesTest : public StoreTest {
 protected:
  /// Of a column of a SELECT: "Table.column", or nothing.
  std::string referenceOf(std::string_view source, std::size_t column = 0) {
    const auto opened = records(source, SourceKind::unknown);
    if (!opened) return "(failed)";
    const Reference& reference = opened->columns()[column].reference;
    return reference.table.empty() ? "" : reference.table + "." + reference.column;
  }
};

TEST_F(ReferencesTest, AForeignKeyOfOneColumnIsOne) {
  prepare("CREATE TABLE Parent (id INTEGER PRIMARY KEY, code TEXT UNIQUE)");
  prepare("CREATE TABLE Child (a INTEGER REFERENCES Parent (id), b TEXT REFERENCES parent (CODE), c TEXT)");
  open();
  EXPECT_EQ("Parent.id", referenceOf("Child", 0));
  EXPECT_EQ("parent.CODE", referenceOf("Child", 1)) << "as it is written";
  EXPECT_EQ("", referenceOf("Child", 2));
  EXPECT_EQ("Parent.id", referenceOf("SELECT c, a AS other FROM Child WHERE b IS NULL", 1));
  EXPECT_EQ("", referenceOf("SELECT a + 1 FROM Child"));
  EXPECT_EQ("", referenceOf("SELECT count(a) FROM Child"));
}

TEST_F(ReferencesTest, WithoutAColumnThePrimaryKeyIsMeant) {
  prepare("CREATE TABLE Parent (code TEXT PRIMARY KEY, id INTEGER)");
  prepare("CREATE TABLE Pair (x, y, PRIMARY KEY (x, y))");
  prepare("CREATE TABLE Child (a REFERENCES Parent, b REFERENCES Pair, c REFERENCES Nowhere)");
  open();
  EXPECT_EQ("Parent.code", referenceOf("Child", 0));
  EXPECT_EQ("", referenceOf("Child", 1));
  EXPECT_EQ("", referenceOf("Child", 2));
}

TEST_F(ReferencesTest, AForeignKeyOfSeveralColumnsIsNone) {
  prepare("CREATE TABLE Pair (x, y, PRIMARY KEY (x, y))");
  prepare("CREATE TABLE Child (x, y, FOREIGN KEY (x, y) REFERENCES Pair (x, y))");
  open();
  EXPECT_EQ("", referenceOf("Child", 0));
  EXPECT_EQ("", referenceOf("Child", 1));
}

TEST_F(ReferencesTest, OfTwoForeignKeysTheFirstCounts) {
  prepare("CREATE TABLE One (id INTEGER PRIMARY KEY)");
  prepare("CREATE TABLE Two (id INTEGER PRIMARY KEY)");
  prepare("CREATE TABLE Child (a REFERENCES One (id) REFERENCES Two (id))");
  open();
  EXPECT_EQ("One.id", referenceOf("Child"));
}

TEST_F(ReferencesTest, ATableMayReferToItselfAndHaveNoRowIds) {
  prepare("CREATE TABLE Tree (id TEXT PRIMARY KEY, up TEXT REFERENCES Tree) WITHOUT ROWID");
  open();
  EXPECT_EQ("Tree.id", referenceOf("Tree", 1));
  EXPECT_EQ("", referenceOf("Tree", 0));
}

TEST_F(ReferencesTest, NamesMayBeAnything) {
  prepare("CREATE TABLE \"the \"\"parent\"\" ]'\" (\"k'e]y\" PRIMARY KEY)");
  prepare("CREATE TABLE \"the child\" (\"a b\" REFERENCES \"the \"\"parent\"\" ]'\")");
  open();
  EXPECT_EQ("the \"parent\" ]'.k'e]y", referenceOf("the child"));
}

}  // namespace
}  // namespace store
