#include "tests/unit/data/store_fixture.h"

#include "base/variant.h"
#include "data/handles/recordset_handle.h"
#include "owners/handles.h"

namespace {

class RegisteredStore final : public testing::Environment {
 public:
  void SetUp() override {
    const std::wstring path = (testsupport::binFolder() / "adoce31.dll").wstring();
    module_.reset(LoadLibraryW(path.c_str()));
    ASSERT_TRUE(module_) << "can't load adoce31.dll, error " << GetLastError();
    const auto registerServer = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(module_.get(), "DllRegisterServer")));
    ASSERT_NE(registerServer, nullptr);
    ASSERT_EQ(registerServer(), S_OK);
  }

 private:
  UniqueModule module_;
};

[[maybe_unused]] testing::Environment* const kRegisteredStore =
    testing::AddGlobalTestEnvironment(new RegisteredStore);

}  // namespace

void makeDatabase(const std::wstring& path, std::initializer_list<const wchar_t*> statements) {
  {
    ConnectionHandle connection;
    ASSERT_TRUE(connection.setConnectionString(L""));
    ASSERT_EQ(connection.open(), ConnectionHandle::kOpened);
    ASSERT_TRUE(connection.execute((L"CREATE DATABASE '" + path + L"'").c_str()));
  }
  runOn(path, statements);
}

void runOn(const std::wstring& path, std::initializer_list<const wchar_t*> statements) {
  ConnectionHandle connection;
  ASSERT_TRUE(connection.setConnectionString(path.c_str()));
  ASSERT_EQ(connection.open(), ConnectionHandle::kOpened);
  for (const wchar_t* statement : statements) {
    ASSERT_TRUE(connection.execute(statement)) << testing::PrintToString(std::wstring(statement));
  }
}

std::vector<std::wstring> namesOf(const NameList& names) {
  std::vector<std::wstring> texts;
  for (std::uint32_t i = 0; i < names.size(); ++i) texts.emplace_back(names[i].text());
  return texts;
}

DataTest::DataTest() = default;

std::wstring DataTest::stored(const std::wstring& select) {
  if (!isReaderOpen_) {
    reader_.setConnectionString(path_.c_str());
    isReaderOpen_ = reader_.open() == ConnectionHandle::kOpened;
    EXPECT_TRUE(isReaderOpen_);
  }
  RecordsetHandle recordset;
  EXPECT_TRUE(recordset.open(select.c_str(), &reader_, CursorType::keyset, SourceKind::text));
  const Variant& value = recordset.field(0).value();
  EXPECT_NE(value.type(), VT_EMPTY) << "no record, or no field";
  if (value.type() == VT_NULL) return L"(null)";
  Variant text;
  EXPECT_EQ(value.convertTo(VT_BSTR, text), S_OK);
  return std::wstring(text.get().bstrVal, SysStringLen(text.get().bstrVal));
}

void DataTest::openWith(std::initializer_list<const wchar_t*> statements) {
  ASSERT_NO_FATAL_FAILURE(makeDatabase(path_, statements));
  ASSERT_TRUE(database_.open(path_.c_str()));
}

void DataTest::openTable(const std::wstring& columns, std::initializer_list<const wchar_t*> rows) {
  ASSERT_NO_FATAL_FAILURE(makeDatabase(path_, {(L"CREATE TABLE t (" + columns + L")").c_str()}));
  for (const wchar_t* row : rows) {
    ASSERT_NO_FATAL_FAILURE(runOn(path_, {(std::wstring(L"INSERT INTO t VALUES (") + row + L")").c_str()}));
  }
  ASSERT_TRUE(database_.open(path_.c_str()));
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
}
