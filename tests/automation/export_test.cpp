// Records of the database into other files.
#include <initializer_list>
#include <string>
#include <utility>

#include "tests/automation/support/exchange_fixture.h"

namespace automationtest {
namespace {

constexpr HRESULT kIllegal = objectModelError(3219);
constexpr HRESULT kBadArgument = objectModelError(3001);

class Export : public ExchangeTest {
 protected:
  HRESULT exportRows(const std::wstring& source, long options, const std::wstring& name, hyper* records,
                     IDispatch* question = nullptr) {
    hyper changed = 0;
    return connection_->ExportRows(text(source).get(), options, text(L"Title").get(),
                                   text(pathOf(name)).get(), question, &changed, records);
  }
};

TEST_F(Export, TheEndingOfTheFileTellsTheFormat) {
  SqliteFile(pathOf(L"test.cdb"))
      .run(
          "CREATE TABLE T (Name TEXT, Age INTEGER);"
          "INSERT INTO T VALUES ('\xC3\x84\x64\x61', 36), (NULL, 1)");
  hyper records = 0;
  EXPECT_EQ(exportRows(L"T", kTable, L"t.csv", &records), S_OK);
  EXPECT_EQ(records, 2);
  EXPECT_EQ(contentOf(pathOf(L"t.csv")), "\xEF\xBB\xBFName,Age\r\n\xC3\x84\x64\x61,36\r\n,1\r\n");
  EXPECT_EQ(exportRows(L"SELECT Age FROM T WHERE Age > 1", kText, L"t.JSON", &records), S_OK);
  EXPECT_EQ(records, 1);
  EXPECT_THAT(contentOf(pathOf(L"t.JSON")), testing::HasSubstr("\"Age\":36"));
  EXPECT_EQ(exportRows(L"T", kTable, L"t.html", &records), S_OK);
  EXPECT_THAT(contentOf(pathOf(L"t.html")), testing::HasSubstr("Title"));
  EXPECT_EQ(exportRows(L"T", kTable, L"t.sql", &records), S_OK);
  EXPECT_THAT(contentOf(pathOf(L"t.sql")), testing::HasSubstr("CREATE TABLE"));
}

TEST_F(Export, AFileIsReplacedOnlyWhenAllIsWritten) {
  writeFile(pathOf(L"t.csv"), "what was there");
  hyper records = -1;
  EXPECT_EQ(exportRows(L"NoSuch", kTable, L"t.csv", &records), kNoTable);
  EXPECT_EQ(records, -1);
  EXPECT_EQ(contentOf(pathOf(L"t.csv")), "what was there");
  Stopper stopper;
  EXPECT_EQ(
      exportRows(
          L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 9000) SELECT i FROM n",
          kText, L"t.csv", &records, &stopper),
      kIllegal);
  EXPECT_THAT(stopper.what, testing::ElementsAre(kWriting));
  EXPECT_EQ(contentOf(pathOf(L"t.csv")), "what was there");
  EXPECT_EQ(exportRows(L"SELECT 1 AS A", kText, L"t.csv", &records), S_OK);
  EXPECT_EQ(contentOf(pathOf(L"t.csv")),
            "\xEF\xBB\xBF"
            "A\r\n1\r\n");
}

TEST_F(Export, TheOpenFileIsNeverReplaced) {
  const std::string before = contentOf(pathOf(L"test.cdb"));
  hyper records = 0;
  EXPECT_EQ(exportRows(L"SELECT 1", kText, L"test.cdb", &records), objectModelError(3731));
  EXPECT_EQ(connection_->put_ConnectionString(text(L"").get()), S_OK);
  EXPECT_EQ(exportRows(L"SELECT 1", kText, L"test.cdb", &records), objectModelError(3731))
      << "whatever the connection string names by now";
  EXPECT_EQ(contentOf(pathOf(L"test.cdb")), before);
}

TEST_F(Export, NeitherIsItWhenTheCurrentFolderHasBecomeAnother) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::path(pathOf(L"test.cdb")).parent_path());
  ComPtr<IAdoceConnection> other = newConnection();
  EXPECT_EQ(openAt(other.get(), L"test.cdb"), S_OK);
  std::filesystem::create_directory(pathOf(L"elsewhere"));
  std::filesystem::current_path(pathOf(L"elsewhere"));
  const std::string content = contentOf(pathOf(L"test.cdb"));
  hyper changed = 0;
  hyper records = 0;
  EXPECT_EQ(other->ExportRows(text(L"SELECT 1").get(), kText, text(L"Title").get(),
                              text(pathOf(L"test.cdb")).get(), nullptr, &changed, &records),
            objectModelError(3731));
  EXPECT_EQ(contentOf(pathOf(L"test.cdb")), content);
  std::filesystem::current_path(before);
}

TEST_F(Export, TheFormatOfANameCanBeAsked) {
  for (const auto& [name, expected] :
       std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>{{L"C:\\a.CSV", L"csv"},
                                                                        {L"a.json", L"json"},
                                                                        {L"a.ndjson", L"jsonl"},
                                                                        {L"a.htm", L"html"},
                                                                        {L"a.sql", L"sql"},
                                                                        {L"a.txt", L"csv"},
                                                                        {L"", L"csv"}}) {
    UniqueBstr format;
    EXPECT_EQ(connection_->ExportFormat(text(name).get(), format.put()), S_OK);
    EXPECT_STREQ(format.get(), expected);
  }
  EXPECT_EQ(connection_->ExportFormat(nullptr, nullptr), E_POINTER);
}

TEST_F(Export, AStatementThatChangesAnythingIsNotRun) {
  SqliteFile(pathOf(L"test.cdb")).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('stays')");
  hyper records = 0;
  EXPECT_EQ(exportRows(L"DELETE FROM T", kText, L"t.csv", &records), kIllegal);
  EXPECT_EQ(exportRows(L"T", 7, L"t.csv", &records), kBadArgument);
  EXPECT_THAT(stored("SELECT Name FROM T"), testing::ElementsAre("stays"));
  EXPECT_FALSE(std::filesystem::exists(pathOf(L"t.csv")));
}

}  // namespace
}  // namespace automationtest
