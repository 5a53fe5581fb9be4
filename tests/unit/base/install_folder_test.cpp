#include "base/install_folder.h"

#include "tests/unit/base/registry_fixture.h"

namespace {

class InstallFolderTest : public RegistryTest {
 protected:
  static void record(const wchar_t* name, const std::wstring& text) {
    UniqueRegistryKey key;
    ASSERT_EQ(RegCreateKeyW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Apps\\Morvale Software Quivane for Pocket PC",
                            key.put()),
              ERROR_SUCCESS);
    const Bytes bytes = bytesOfText(text + L'\0');
    ASSERT_EQ(RegSetValueExW(key.get(), name, 0, REG_SZ, bytes.data(), static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
  }
};

TEST_F(InstallFolderTest, TheRecordedFolderIsFound) {
  record(L"InstallDir", L"\\Program Files\\Quivane");
  String folder;
  EXPECT_TRUE(readInstallFolder(folder));
  EXPECT_STREQ(folder.text(), L"\\Program Files\\Quivane");
}

TEST_F(InstallFolderTest, WithoutARecordTheFolderIsNotFound) {
  String folder = L"before";
  EXPECT_FALSE(readInstallFolder(folder));
  EXPECT_STREQ(folder.text(), L"before");
}

TEST_F(InstallFolderTest, ARecordWithoutTheFolderIsNoFolder) {
  record(L"Instl", L"1");
  String folder = L"before";
  EXPECT_FALSE(readInstallFolder(folder));
  EXPECT_STREQ(folder.text(), L"before");
}

TEST_F(InstallFolderTest, AnEmptyFolderIsNoFolder) {
  record(L"InstallDir", L"");
  String folder = L"before";
  EXPECT_FALSE(readInstallFolder(folder));
  EXPECT_STREQ(folder.text(), L"before");
}

}  // namespace
