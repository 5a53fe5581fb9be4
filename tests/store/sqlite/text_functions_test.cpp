// The functions in which letter case makes no difference, as statements call them.
#include <string>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

/// Capitals of A to Z, of the Greek letters, and of one letter of one byte fewer in UTF-8.
const CaseFolding& someLetters() {
  static const CaseFolding folding([](char16_t unit) -> char16_t {
    if (unit >= u'a' && unit <= u'z') return static_cast<char16_t>(unit - 32);
    if (unit >= u'\u03B1' && unit <= u'\u03C9') return static_cast<char16_t>(unit - 32);
    if (unit == u'\u00E4') return u'\u00C4';
    return unit == u'\u0131' ? u'I' : unit;
  });
  return folding;
}

class TextFunctionsTest : public StoreTest {
 protected:
  void openWithLetters() {
    OpenOptions options;
    options.folding = someLetters;
    open(options);
  }
  /// The only value of a SELECT on the table "one", which has one row.
  std::string valueOf(const std::string& expression) {
    return columnOf("SELECT " + expression + " FROM one");
  }
  void SetUp() override {
    StoreTest::SetUp();
    prepare("CREATE TABLE one (a); INSERT INTO one VALUES (1)");
    openWithLetters();
  }
};

TEST_F(TextFunctionsTest, FoldReplacesLettersOfEveryAlphabet) {
  EXPECT_EQ("ABC 12", valueOf("quivane_fold('aBc 12')"));
  EXPECT_EQ("\u00C4\u0391\u03A9", valueOf("quivane_fold('\u00E4\u03B1\u03C9')"));
  EXPECT_EQ("DIR I", valueOf("quivane_fold('d\u0131r i')"));
  EXPECT_EQ("\U0001F600", valueOf("quivane_fold('\U0001F600')"));
  EXPECT_EQ("", valueOf("quivane_fold('')"));
}

TEST_F(TextFunctionsTest, FoldKeepsTheKindOfEveryOtherValue) {
  EXPECT_EQ("9223372036854775807", valueOf("quivane_fold(9223372036854775807)"));
  EXPECT_EQ("real", valueOf("typeof(quivane_fold(1.5))"));
  EXPECT_EQ("blob", valueOf("typeof(quivane_fold(x'6162'))"));
  EXPECT_EQ("61", valueOf("hex(quivane_fold(x'61'))"));
  EXPECT_EQ("null", valueOf("typeof(quivane_fold(NULL))"));
}

TEST_F(TextFunctionsTest, FoldTakesWhatIsNoText) {
  EXPECT_EQ("414200", valueOf("hex(quivane_fold(CAST(x'616200' AS TEXT)))"));
  EXPECT_EQ("EFBFBD41", valueOf("hex(quivane_fold(CAST(x'FF61' AS TEXT)))"));
  const std::string longText(100'000, 'x');
  EXPECT_EQ("1", valueOf("quivane_fold('" + longText + "') = upper('" + longText + "')"));
}

TEST_F(TextFunctionsTest, ContainsIgnoresLetterCaseEverywhere) {
  EXPECT_EQ("1", valueOf("quivane_contains('LYSS', 'Ulysses')"));
  EXPECT_EQ("1", valueOf("quivane_contains('\u03B1\u03C9', 'the \u0391\u03A9')"));
  EXPECT_EQ("0", valueOf("quivane_contains('Odyssey', 'Ulysses')"));
  EXPECT_EQ("1", valueOf("quivane_contains('', 'anything')"));
  EXPECT_EQ("0", valueOf("quivane_contains('x', NULL)"));
  EXPECT_EQ("null", valueOf("typeof(quivane_contains(NULL, 'x'))"));
}

TEST_F(TextFunctionsTest, SignsOfPatternsAreOrdinaryOnes) {
  EXPECT_EQ("1", valueOf("quivane_contains('%', '100 %')"));
  EXPECT_EQ("0", valueOf("quivane_contains('%', 'all')"));
  EXPECT_EQ("0", valueOf("quivane_contains('a_c', 'abc')"));
  EXPECT_EQ("1", valueOf("quivane_contains('*[', 'a*[b')"));
  EXPECT_EQ("1", valueOf("quivane_contains('O''N', 'o''neill')"));
}

TEST_F(TextFunctionsTest, NumbersAndBytesAreFoundAsTheyAreShown) {
  EXPECT_EQ("1", valueOf("quivane_contains('775807', 9223372036854775807)"));
  EXPECT_EQ("0", valueOf("quivane_contains('.', 5)"));
  EXPECT_EQ("1", valueOf("quivane_contains('3.500000', 3.5)"));
  EXPECT_EQ("1", valueOf("quivane_contains('-2.', -2.0)"));
  EXPECT_EQ("1", valueOf("quivane_contains('50 4e', x'89504E')"));
  EXPECT_EQ("0", valueOf("quivane_contains('P', x'89504E')"));
}

TEST_F(TextFunctionsTest, ContainsLooksAtAllValuesOfARow) {
  EXPECT_EQ("1", valueOf("quivane_contains('x', 1, NULL, 'aXb')"));
  EXPECT_EQ("0", valueOf("quivane_contains('x', 1, NULL, 'ab')"));
  std::unique_ptr<Recordset> recordset;
  EXPECT_EQ(ErrorCode::errorsInCommand,
            tryOpen("SELECT * FROM one WHERE quivane_contains('x')", &recordset).code());
}

TEST_F(TextFunctionsTest, EachRowMayHaveATextOfItsOwn) {
  run("CREATE TABLE pairs (needle Text, hay Text)");
  run("INSERT INTO pairs VALUES ('a', 'xAx'), ('b', 'xAx'), (NULL, 'x'), ('X', 'axa')");
  EXPECT_EQ("a X", columnOf("SELECT needle FROM pairs WHERE quivane_contains(needle, hay)"));
}

TEST_F(TextFunctionsTest, WithoutASystemTheLettersOfEnglishAreFolded) {
  open();
  EXPECT_EQ("AZ\u00E4", valueOf("quivane_fold('az\u00E4')"));
}

// Other programs could not use what is made with them.
TEST_F(TextFunctionsTest, NoStructureOfTheFileIsMadeWithThem) {
  run("CREATE TABLE t (a Text)");
  EXPECT_FALSE(tryRun("CREATE INDEX i ON t (quivane_fold(a))"));
  EXPECT_FALSE(tryRun("CREATE TABLE u (a Text CHECK (quivane_contains('x', a)))"));
  EXPECT_FALSE(tryRun("CREATE TABLE u (a Text, b AS (quivane_fold(a)))"));
  EXPECT_FALSE(tryRun("CREATE TABLE u (a Text DEFAULT (quivane_fold('a')))"));
  EXPECT_FALSE(tryRun("CREATE VIEW v AS SELECT quivane_fold(a) FROM t"));
  EXPECT_FALSE(tryRun("CREATE VIEW v AS SELECT [Quivane_Contains] ('x', a) FROM t"));
  EXPECT_FALSE(tryRun("ALTER TABLE t ADD COLUMN b Text DEFAULT (quivane_fold('a'))"));
  EXPECT_FALSE(tryRun("CREATE TRIGGER r AFTER INSERT ON t BEGIN SELECT quivane_fold(new.a); END"));
  EXPECT_EQ("0", OtherProgram(path_).ask("SELECT count(*) FROM sqlite_schema WHERE sql LIKE '%quivane_%'"));
}

TEST_F(TextFunctionsTest, RowsAreOrderedByFoldedTextsAndStayUpdatable) {
  run("CREATE TABLE t (a Text)");
  run("INSERT INTO t VALUES ('b'), ('\u03C9'), ('A'), (NULL), ('B2'), ('\u0391'), ('a2')");
  const auto recordset = records("SELECT * FROM [t] ORDER BY quivane_fold([a]) DESC");
  ASSERT_NE(nullptr, recordset);
  EXPECT_TRUE(recordset->isUpdatable());
  EXPECT_EQ("\u03C9 \u0391 B2 b a2 A (null)", columnOf(*recordset));
}

}  // namespace
}  // namespace store
