#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// Values of fields that are written into files of their own, and what other fields they refer to.

namespace automationtest {
namespace {

class SavedFieldTest : public AutomationTest {
 protected:
  void SetUp() override {
    SqliteFile file(path_);
    file.run("CREATE TABLE Books (Id INTEGER PRIMARY KEY, Cover BLOB, Title TEXT)");
    file.run("CREATE TABLE Loans (Book INTEGER REFERENCES Books, Note TEXT)");
    file.run("INSERT INTO Books VALUES (1, x'0041ff', 'Émile'), (2, NULL, NULL), (3, x'', '')");
    connection_ = connectTo(path_);
    books_ = recordsOf(connection_.get(), L"Select * from [Books]");
  }
  HRESULT save(const wchar_t* field, const std::wstring& path) {
    return books_->SaveField(*variant(field), text(path).get());
  }

  std::wstring path_ = pathOf(L"books.cdb");
  ComPtr<IAdoceConnection> connection_;
  ComPtr<IAdoceRecordset> books_;
};

TEST_F(SavedFieldTest, BytesAreWrittenAsTheyAreAndTextsInUtf8) {
  ASSERT_EQ(save(L"Cover", pathOf(L"cover.bin")), S_OK);
  EXPECT_EQ(contentOf(pathOf(L"cover.bin")), std::string("\0A\xFF", 3));
  ASSERT_EQ(save(L"Title", pathOf(L"cover.bin")), S_OK) << "a file that is there is replaced";
  EXPECT_EQ(contentOf(pathOf(L"cover.bin")), "Émile");
}

TEST_F(SavedFieldTest, AnEmptyValueIsAnEmptyFileAndNoValueIsNone) {
  writeFile(pathOf(L"out"), "as before");
  ASSERT_EQ(books_->MoveNext(), S_OK);
  EXPECT_EQ(save(L"Cover", pathOf(L"out")), objectModelError(3421));
  EXPECT_EQ(save(L"Id", pathOf(L"out")), objectModelError(3421));
  EXPECT_EQ(contentOf(pathOf(L"out")), "as before");
  ASSERT_EQ(books_->MoveNext(), S_OK);
  EXPECT_EQ(save(L"Cover", pathOf(L"out")), S_OK);
  EXPECT_EQ(contentOf(pathOf(L"out")), "");
}

TEST_F(SavedFieldTest, TheDatabaseAndWhatIsKeptBesideItAreNeverWritten) {
  const std::string before = contentOf(path_);
  for (const wchar_t* const ending : {L"", L"-journal", L"-wal", L"-shm"}) {
    EXPECT_TRUE(FAILED(save(L"Cover", path_ + ending))) << ending;
  }
  EXPECT_EQ(contentOf(path_), before);
}

TEST_F(SavedFieldTest, WhatCanNotBeDoneFails) {
  EXPECT_TRUE(FAILED(save(L"Cover", pathOf(L"no folder") + L"\\cover.bin")));
  EXPECT_TRUE(FAILED(save(L"Nowhere", pathOf(L"out"))));
  EXPECT_TRUE(FAILED(books_->SaveField(*variant(L"Cover"), nullptr)));
  ASSERT_EQ(books_->Close(), S_OK);
  EXPECT_TRUE(FAILED(save(L"Cover", pathOf(L"out"))));
}

TEST_F(SavedFieldTest, AFieldTellsToWhichFieldItsValuesRefer) {
  const auto loans = recordsOf(connection_.get(), L"Select * from [Loans]");
  const auto referenceOf = [&](long index) {
    UniqueBstr table;
    UniqueBstr field;
    EXPECT_EQ(fieldOf(loans.get(), index)->get_ReferencedTable(table.put()), S_OK);
    EXPECT_EQ(fieldOf(loans.get(), index)->get_ReferencedField(field.put()), S_OK);
    return std::wstring(table.get(), SysStringLen(table.get())) + L"." +
           std::wstring(field.get(), SysStringLen(field.get()));
  };
  EXPECT_EQ(referenceOf(0), L"Books.Id");
  EXPECT_EQ(referenceOf(1), L".");
  EXPECT_EQ(fieldOf(loans.get(), 0L)->get_ReferencedTable(nullptr), E_POINTER);
}

}  // namespace
}  // namespace automationtest
