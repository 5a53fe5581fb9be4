#include "platform/store/exchange/export.h"

#include "platform/store/exchange/formats/html_writer.h"
#include "platform/store/exchange/formats/json_writer.h"
#include "platform/store/exchange/formats/sql_writer.h"
#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

class ExportTest : public ExchangeTest {
 protected:
  void SetUp() override {
    ExchangeTest::SetUp();
    prepare(
        "CREATE TABLE T (Name Varchar (255), N Integer, X Float, B Bit, D Datetime, R Long Varbinary);"
        "INSERT INTO T VALUES ('a, \"b\"', 5, 2, 1, '2001-03-09', x'00FF'), (NULL, NULL, 0.1, -1, NULL, x''),"
        "('007', -3, 1e300, 0, '2001-03-09 14:05:07', NULL), ('', 0, NULL, NULL, NULL, NULL)");
    open();
  }
};

TEST_F(ExportTest, CsvHasQuotesWhereTheyAreNeeded) {
  EXPECT_EQ(csvOf("T"),
            "Name,N,X,B,D,R\n\"a, \"\"b\"\"\",5,2,true,2001-03-09,x'00FF'\n,,0.1,-1,,x''\n"
            "\"007\",-3,1e+300,false,2001-03-09 14:05:07,\n\"\",0,,,,\n");
}

TEST_F(ExportTest, CsvCanHaveOtherSeparatorsAndNoHeader) {
  CsvWriter::Options options;
  options.format = {.separator = ';', .hasHeader = false, .nullText = "NULL"};
  options.hasMark = true;
  CsvWriter writer(options);
  EXPECT_EQ(exported("SELECT Name, N FROM T", writer),
            "\xEF\xBB\xBF\"a, \"\"b\"\"\";5\r\nNULL;NULL\r\n\"007\";-3\r\n\"\";0\r\n");
}

TEST_F(ExportTest, JsonIsAnArrayOrLines) {
  JsonWriter array(JsonWriter::Shape::array);
  EXPECT_EQ(exported("SELECT Name, N, B, R FROM T WHERE N = 5 OR N IS NULL", array),
            "[\n{\"Name\":\"a, \\\"b\\\"\",\"N\":5,\"B\":true,\"R\":{\"hex\":\"00FF\"}},\n"
            "{\"Name\":null,\"N\":null,\"B\":-1,\"R\":{\"hex\":\"\"}}\n]\n");
  JsonWriter lines(JsonWriter::Shape::lines);
  EXPECT_EQ(exported("SELECT X, 1 AS X, 2 AS X FROM T WHERE N = 5", lines),
            "{\"X\":2,\"X 2\":1,\"X 3\":2}\n");
  JsonWriter empty(JsonWriter::Shape::array);
  EXPECT_EQ(exported("SELECT * FROM T WHERE 0", empty), "[]\n");
}

TEST_F(ExportTest, HtmlShowsEverySignAsItIs) {
  HtmlWriter writer("<Books> & \"more\"");
  const std::string page = exported("SELECT '<b>&\"' AS \"<x>\", N, B FROM T WHERE N = 5", writer);
  EXPECT_NE(page.find("<title>&lt;Books&gt; &amp; &quot;more&quot;</title>"), std::string::npos) << page;
  EXPECT_NE(page.find("<th>&lt;x&gt;</th><th>N</th><th>B</th>"), std::string::npos) << page;
  EXPECT_NE(page.find("<tr><td>&lt;b&gt;&amp;&quot;</td><td class=\"n\">5</td><td>true</td></tr>"),
            std::string::npos)
      << page;
  EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST_F(ExportTest, SqlMakesTheTableAgainToTheBit) {
  using namespace std::string_literals;
  {
    OtherProgram other(path_);
    other.run(
        "CREATE TABLE [odd 'name\"] (a, b REAL, c AS (b * 2), \"d;\" BLOB DEFAULT 'x'); CREATE INDEX I ON "
        "[odd 'name\"] "
        "(b); CREATE TRIGGER G AFTER INSERT ON [odd 'name\"] BEGIN DELETE FROM T; END;"
        "INSERT INTO [odd 'name\"] (a, b, \"d;\") VALUES ('it''s; --', 9e999, x'00'), (CAST(x'610062' AS "
        "TEXT), "
        "-9e999, CAST(x'FF' AS TEXT)), (5, 1e300, '5'), (5.0, 0.1, NULL)");
  }
  const std::string name = "odd 'name\"";
  TableStatements statements;
  ASSERT_TRUE(readTableStatements(*backend_, name, &statements));
  EXPECT_EQ(statements.columns, (std::vector<std::string>{"a", "b", "d;"}));
  SqlWriter writer(name, statements);
  const std::string sql = exported("SELECT a, b, \"d;\" FROM [odd 'name\"]", writer);

  const std::filesystem::path copy = folder_.file("copy.db");
  OtherProgram made(copy);
  made.run(sql);
  const char* all =
      "SELECT group_concat(typeof(a) || hex(a) || typeof(b) || quote(b) || quote(c) || typeof(\"d;\") || "
      "hex(\"d;\")) "
      "FROM [odd 'name\"]";
  EXPECT_EQ(made.ask(all), ask(all));
  const char* schema =
      "SELECT group_concat(sql, '; ') FROM sqlite_schema WHERE tbl_name LIKE 'odd%' ORDER BY name";
  EXPECT_EQ(made.ask(schema), ask(schema));
}

TEST_F(ExportTest, SqlOfAQueryMakesATableOfItsOwn) {
  SqlWriter writer("Result", {});
  const std::string sql = exported("SELECT Name, N + 1 AS M FROM T WHERE N = 5", writer);
  OtherProgram made(folder_.file("copy.db"));
  made.run(sql);
  EXPECT_EQ(made.ask("SELECT Name || M FROM Result"), "a, \"b\"6");
}

TEST_F(ExportTest, TextsThatAreNoCharactersAreCounted) {
  OtherProgram(path_).run("DELETE FROM T; INSERT INTO T (Name) VALUES (CAST(x'61FF' AS TEXT)), ('fine')");
  // (Whatever else is in the file stays UTF-8.)
  EXPECT_EQ(csvOf("SELECT Name FROM T"), "Name\na\xEF\xBF\xBD\nfine\n");
  EXPECT_EQ(exported_.changed, 1);
  JsonWriter json(JsonWriter::Shape::lines);
  EXPECT_EQ(exported("SELECT Name FROM T", json), "{\"Name\":\"a\xEF\xBF\xBD\"}\n{\"Name\":\"fine\"}\n");
  EXPECT_EQ(exported_.changed, 1);
}

TEST_F(ExportTest, AViewAndTheCatalogueAreExportedToo) {
  OtherProgram(path_).run("CREATE VIEW V AS SELECT N FROM T WHERE N > 0");
  EXPECT_EQ(csvOf("V"), "N\n5\n");
  EXPECT_NE(csvOf("MSysTables").find("MSysFields"), std::string::npos);
}

TEST_F(ExportTest, OnlyWhatReadsIsRun) {
  std::string text;
  CsvWriter writer({});
  for (const char* statement :
       {"DELETE FROM T", "DELETE FROM T RETURNING N", "CREATE TABLE X (a)", "VACUUM",
        "CREATE DATABASE 'x.cdb'", "SELECT 1; SELECT 2", "SELECT N FROM T WHERE N = ?", ""}) {
    EXPECT_FALSE(tryExport(statement, writer, &text)) << statement;
  }
  EXPECT_EQ(ask("SELECT count(*) FROM T"), "4");
}

TEST_F(ExportTest, AFullDiskIsTold) {
  class FullSink : public ByteSink {
   public:
    Status write(std::string_view bytes) override {
      written += bytes.size();
      return {ErrorCode::inputOutput, "The output can't be written: full."};
    }
    std::size_t written = 0;
  };
  run("INSERT INTO T (Name) VALUES ('" + std::string(100'000, 'x') + "')");
  std::unique_ptr<RowStream> rows;
  ASSERT_TRUE(backend_->openStream("T", SourceKind::table, &rows));
  FullSink sink;
  CsvWriter writer({});
  EXPECT_EQ(exportRows(*rows, writer, sink, observer_, &exported_).message(),
            "The output can't be written: full.");
  EXPECT_LT(sink.written, 100'000u) << "nothing is written behind what failed";
}

TEST_F(ExportTest, ItCanBeCancelled) {
  run("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) INSERT INTO T (N) SELECT i FROM "
      "n");
  observer_.cancels = true;
  CsvWriter writer({});
  std::string text;
  EXPECT_EQ(tryExport("T", writer, &text).message(), "The export was cancelled.");
}

TEST(ExportNames, TheEndingTellsTheFormatAndTheSeparator) {
  EXPECT_EQ(formatOfName("a.CSV"), ExportFormat::csv);
  EXPECT_EQ(separatorOfName("a.CSV"), ',');
  for (const char* name : {"a.tsv", "A.TSV", "a.b.tab"}) {
    EXPECT_EQ(formatOfName(name), ExportFormat::csv) << name;
    EXPECT_EQ(separatorOfName(name), '\t') << name;
  }
  EXPECT_EQ(formatOfName("a.ndjson"), ExportFormat::jsonLines);
  EXPECT_FALSE(formatOfName("tsv"));
  EXPECT_EQ(separatorOfName("tsv"), ',');
}

}  // namespace
}  // namespace store::exchange
