#include "tests/ui/form/form_fixture.h"

#include <commctrl.h>

#include <utility>

#include "base/settings/app_settings.h"
#include "tests/ui/support/test_database.h"
#include "tests/ui/support/window_reading.h"

void FormFixture::SetUp() {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_DATE_CLASSES};
  InitCommonControlsEx(&controls);
  FormWrapper::registerClass(GetModuleHandleW(nullptr));  // fails but for the first test
  ASSERT_NE(host_.get(), nullptr);
  ASSERT_NE(wrapper_.create(GetModuleHandleW(nullptr), host_.get(), {240, 220}, DefWindowProcW), nullptr);
}

void FormFixture::TearDown() {
  view_.prepare(nullptr);
  document_.reset();
  theAppSettings.reset();
}

void FormFixture::showTable(const std::wstring& createTable, std::initializer_list<const wchar_t*> inserts) {
  makeDatabase(path_, {createTable.c_str()});
  runStatements(path_, inserts);
  document_ = std::make_unique<Document>(DocumentPages{std::make_unique<FakeTables>(inSight_),
                                                       std::make_unique<FakeQueries>(inSight_), grid_, view_,
                                                       bar_, prompts_});
  view_.prepare(document_.get());
  ASSERT_TRUE(document_->openDatabase(path_.c_str()));
  document_->setViewMode(ViewMode::form);
  ASSERT_TRUE(document_->isRecordsetOpen());
  // The Document leaves the form of an empty table unbuilt until there is a record.
  if (recordCount == 0) view_.build();
}

void FormFixture::showFields(int count, const wchar_t* type) {
  const std::wstring name = type;
  const std::wstring value = name == L"Text" ? L"'v'" : name == L"Datetime" ? L"'1900-01-04'" : L"5";
  std::wstring createTable = L"CREATE TABLE 'T' (";
  std::wstring insert = L"INSERT INTO T VALUES (";
  for (int i = 0; i < count; ++i) {
    const wchar_t* const separator = i == 0 ? L"" : L", ";
    createTable += separator + (L"f" + std::to_wstring(i)) + L" " + name;
    insert += separator + value;
  }
  insert += L")";
  showTable(createTable + L")", {insert.c_str()});
}

void FormFixture::showOneOfEach() {
  showTable(L"CREATE TABLE 'T' (abc Text, n Integer, flag Bit, born Datetime, x Float, u UInt16)",
            {L"INSERT INTO T VALUES ('one', -2, 1, '2001-03-09', 1.5, 7)"});
}

std::wstring FormFixture::storedText(std::uint32_t field, std::uint32_t record) {
  Database database;
  String text;
  if (database.open(path_.c_str()) && database.openRecordset(L"Select * from [T]") &&
      database.moveTo(record)) {
    text = database.valueText(field);
  }
  currentRecord = record;
  return text.text();
}

void FormFixture::commit() {
  document_->commitCurrentRecord();
  document_->loadRecord();
}

HWND FormFixture::label(const std::wstring& text) const {
  HWND child = nullptr;
  while ((child = FindWindowExW(form(), child, L"STATIC", text.c_str())) != nullptr) {
    if (GetDlgCtrlID(child) == 10) return child;
  }
  return nullptr;
}

void FormFixture::type(HWND control, const std::wstring& text) {
  SetFocus(control);
  for (const wchar_t character : text) SendMessageW(control, WM_CHAR, character, 1);
}
