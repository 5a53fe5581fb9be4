#include "base/settings/settings_file.h"

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <thread>

#include "base/settings/column_widths.h"
#include "base/settings/kept_texts.h"
#include "base/settings/recent_finds.h"
#include "base/settings/settings_store.h"
#include "gtest/gtest.h"
#include "owners/handles.h"
#include "tests/support/paths.h"

namespace {

namespace fs = std::filesystem;

using Found = SettingsFile::Found;
using settings::Value;

constexpr wchar_t kKey[] = L"Software\\A key";

Value textValue(const std::wstring& text) {
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  return {REG_SZ, {bytes, bytes + (text.size() + 1) * sizeof(wchar_t)}};
}

Value numberValue(DWORD number) {
  const auto* const bytes = reinterpret_cast<const BYTE*>(&number);
  return {REG_DWORD, {bytes, bytes + sizeof(number)}};
}

/// As a program does that looks for viruses, or copies the file elsewhere.
UniqueFile holdForOneself(const fs::path& path) {
  return UniqueFile(
      CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

class SettingsFileTest : public testing::Test {
 protected:
  fs::path path() const { return folder_.file("Some settings"); }
  SettingsFile file() const { return SettingsFile(path()); }

  bool write(const wchar_t* name, const Value& value) const {
    return file().write(kKey, name, value.type, value.bytes.data(), value.bytes.size());
  }
  /// What is stored, of type 77 when there is nothing.
  Value read(const wchar_t* name, const wchar_t* key = kKey) const {
    Value value{77, {}};
    file().read(key, name, value);
    return value;
  }
  std::wstring text() const {
    std::ifstream stream(path(), std::ios::binary);
    std::wstring text;
    for (wchar_t unit = 0; stream.read(reinterpret_cast<char*>(&unit), sizeof(unit));) text += unit;
    return text;
  }
  void put(const std::wstring& text) const {
    std::ofstream(path(), std::ios::binary)
        .write(reinterpret_cast<const char*>(text.data()),
               static_cast<std::streamsize>(text.size() * sizeof(wchar_t)));
  }
  std::size_t fileCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
  }

  testsupport::TempFolder folder_;
};

TEST_F(SettingsFileTest, WithoutAFileThereIsNothing) {
  Value value{77, {}};
  EXPECT_EQ(file().read(kKey, L"a", value), Found::noKey);
  EXPECT_EQ(value.type, 77u);
  EXPECT_EQ(fileCount(), 0u);
}

TEST_F(SettingsFileTest, EveryValueReadsBack) {
  const Value values[] = {
      numberValue(0),
      numberValue(0xFFFFFFFF),
      textValue(L""),
      textValue(L"plain"),
      textValue(L"C:\\a \"b\"\\c\\"),
      textValue(L"two\r\nlines, \\"),
      textValue(L"\u00fc\u65e5\U0001F600 ]["),
      textValue(L"ends with ,\\"),
      textValue(std::wstring(L"zero\0inside", 11)),
      textValue(std::wstring(1, L'\xD800')),
      {REG_SZ, {}},
      {REG_SZ, {'o', 'd', 'd'}},
      {REG_SZ, {'a', 0}},
      {REG_BINARY, {}},
      {REG_BINARY, {0, 1, 0xFE, 0xFF}},
      {REG_DWORD, {1, 2}},
      {REG_EXPAND_SZ, {'a', 0, 0, 0}},
      {0x12345678, {1}},
  };
  std::wstring name = L"value";
  for (const Value& value : values) {
    name += L"'\"\\=";
    ASSERT_TRUE(write(name.c_str(), value));
    EXPECT_EQ(read(name.c_str()), value) << text().c_str();
  }
  EXPECT_EQ(fileCount(), 1u) << "something is left beside the file";
}

TEST_F(SettingsFileTest, TheTextIsTheOneOfTheRegistryEditor) {
  ASSERT_TRUE(write(L"Number", numberValue(0x1A2B)));
  ASSERT_TRUE(write(L"Text", textValue(L"a \"b\" \\")));
  ASSERT_TRUE(write(L"Bytes", {REG_BINARY, {1, 0xAB}}));
  EXPECT_EQ(text(),
            L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n"
            L"[HKEY_CURRENT_USER\\Software\\A key]\r\n"
            L"\"Bytes\"=hex:01,ab\r\n"
            L"\"Number\"=dword:00001a2b\r\n"
            L"\"Text\"=\"a \\\"b\\\" \\\\\"\r\n");
}

TEST_F(SettingsFileTest, WhatTheRegistryEditorExportsIsRead) {
  put(L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\A "
      L"key]\r\n\"a\"=\"not here\"\r\n"
      L"[HKEY_CURRENT_USER\\SOFTWARE\\A KEY]\r\n\"Long\"=hex:01,02,\\\r\n  "
      L"03,04\r\n@=\"default\"\r\n\"n\"=dword:0000000A\r\n");
  EXPECT_EQ(read(L"long"), (Value{REG_BINARY, {1, 2, 3, 4}}));
  EXPECT_EQ(read(L"N"), numberValue(10));
  EXPECT_EQ(read(L"a").type, 77u);
}

TEST_F(SettingsFileTest, AKeyWithoutTheValueIsToldFromAMissingKey) {
  ASSERT_TRUE(write(L"a", numberValue(1)));
  Value value;
  EXPECT_EQ(file().read(kKey, L"b", value), Found::noValue);
  EXPECT_EQ(file().read(L"Software\\Another", L"a", value), Found::noKey);
  EXPECT_EQ(file().read(L"software\\a KEY", L"A", value), Found::value);
}

TEST_F(SettingsFileTest, OtherValuesAndKeysStayWhenOneIsWritten) {
  ASSERT_TRUE(write(L"a", numberValue(1)));
  ASSERT_TRUE(file().write(L"Software\\Other", L"a", REG_DWORD, "\2\0\0", 4));
  ASSERT_TRUE(write(L"b", numberValue(3)));
  ASSERT_TRUE(write(L"A", numberValue(4)));
  EXPECT_EQ(read(L"a"), numberValue(4));
  EXPECT_EQ(read(L"a", L"Software\\Other"), numberValue(2));
  EXPECT_EQ(read(L"b"), numberValue(3));
}

TEST_F(SettingsFileTest, LinesThatAreNotUnderstoodArePassedOver) {
  put(L"\xFEFFWindows Registry Editor Version 5.00\r\n\"before\"=dword:1\r\n[HKEY_CURRENT_USER\\Software\\A "
      L"key\r\n\"x\"=dword:1\r\n"
      L"[HKEY_CURRENT_USER\\Software\\A "
      L"key]\r\nnonsense\r\n\"open=1\r\n\"a\"=dword:xyz\r\n\"b\"=dword:123456789\r\n\"c\"=hex:1,,2\r\n"
      L"\"d\"=hex(:1\r\n\"e\"=\"text\" and more\r\n\"f\"\r\n\"good\"=dword:7");
  for (const wchar_t* name : {L"before", L"x", L"a", L"b", L"c", L"d", L"e", L"f"}) {
    EXPECT_EQ(read(name).type, 77u) << name;
  }
  EXPECT_EQ(read(L"good"), numberValue(7));
}

TEST_F(SettingsFileTest, AFileThatHoldsSomethingElseIsKeptBeside) {
  put(L"A letter to a friend");
  EXPECT_EQ(read(L"a").type, 77u);
  ASSERT_TRUE(write(L"a", numberValue(1)));
  EXPECT_EQ(read(L"a"), numberValue(1));
  const fs::path kept = path().wstring() + L".damaged";
  EXPECT_EQ(fs::file_size(kept), 20 * sizeof(wchar_t));
  EXPECT_EQ(fileCount(), 2u);
}

TEST_F(SettingsFileTest, AnEmptyFileIsAsGoodAsNone) {
  put(L"");
  EXPECT_TRUE(write(L"a", numberValue(1)));
  EXPECT_EQ(read(L"a"), numberValue(1));
  EXPECT_EQ(fileCount(), 1u);
}

TEST_F(SettingsFileTest, AFileThatCanNotBeReadIsLeftAlone) {
  ASSERT_TRUE(write(L"a", numberValue(1)));
  {
    const UniqueFile held = holdForOneself(path());
    ASSERT_TRUE(held);
    EXPECT_EQ(read(L"a").type, 77u);
    EXPECT_FALSE(write(L"a", numberValue(2)));
  }
  EXPECT_EQ(read(L"a"), numberValue(1));
  EXPECT_EQ(fileCount(), 1u);
}

TEST_F(SettingsFileTest, AFileThatAnotherProgramKeepsToItselfForAMomentIsWaitedFor) {
  ASSERT_TRUE(write(L"a", numberValue(1)));
  UniqueFile held = holdForOneself(path());
  ASSERT_TRUE(held);
  auto reading = std::async(std::launch::async, [this] { return read(L"a"); });
  EXPECT_EQ(reading.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  held.reset();
  EXPECT_EQ(reading.get(), numberValue(1));
}

TEST_F(SettingsFileTest, AndOneThatItKeepsForLongerIsWaitedForOnce) {
  const SettingsFile settings = file();
  ASSERT_TRUE(settings.write(kKey, L"a", REG_DWORD, "\1\0\0", 4));
  UniqueFile held = holdForOneself(path());
  ASSERT_TRUE(held);
  Value value{77, {}};
  EXPECT_EQ(settings.read(kKey, L"a", value), Found::unreadable);
  EXPECT_EQ(value.type, 77u);
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 5; ++i) EXPECT_EQ(settings.read(kKey, L"a", value), Found::unreadable);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2)) << "each waited for itself";
  held.reset();
  EXPECT_EQ(settings.read(kKey, L"a", value), Found::value);
}

TEST_F(SettingsFileTest, AFileThatIsInUseKeepsItsOldContent) {
  ASSERT_TRUE(write(L"a", numberValue(1)));
  {
    // Another program reads it and does not let it be replaced.
    const UniqueFile held(CreateFileW(path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(held);
    EXPECT_FALSE(write(L"a", numberValue(2)));
    EXPECT_EQ(read(L"a"), numberValue(1));
  }
  EXPECT_EQ(fileCount(), 1u) << "the new file is left beside the old one";
  EXPECT_TRUE(write(L"a", numberValue(2)));
}

TEST_F(SettingsFileTest, WithoutItsFolderNothingIsStored) {
  const SettingsFile file(folder_.file("not there") / "settings");
  EXPECT_FALSE(file.write(kKey, L"a", REG_DWORD, "\1\0\0", 4));
}

TEST_F(SettingsFileTest, AVeryLargeFileIsNotReadAndIsKeptBeside) {
  put(L"x");
  fs::resize_file(path(), 64 * 1024 * 1024);
  EXPECT_EQ(read(L"a").type, 77u);
  EXPECT_TRUE(write(L"a", numberValue(1)));
  EXPECT_EQ(read(L"a"), numberValue(1));
  EXPECT_EQ(fs::file_size(path().wstring() + L".damaged"), 64u * 1024 * 1024);
  EXPECT_EQ(fileCount(), 2u);
}

/// The store keeps its promises with a file, too.
class SettingsInFileTest : public SettingsFileTest {
 protected:
  void SetUp() override { SettingsStore::keepIn(&settingsFile_); }
  void TearDown() override { SettingsStore::keepIn(nullptr); }

  SettingsFile settingsFile_ = file();
};

TEST_F(SettingsInFileTest, NothingGoesToTheRegistry) {
  ASSERT_TRUE(SettingsStore::writeDword(L"Test of files", L"a", 1));
  HKEY key = nullptr;
  const std::wstring path = std::wstring(SettingsStore::kRoot) + L"\\Test of files";
  EXPECT_NE(RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
  EXPECT_EQ(read(L"a", path.c_str()), numberValue(1));
}

TEST_F(SettingsInFileTest, NumbersHaveTheirDefaults) {
  std::uint32_t number = 5;
  EXPECT_FALSE(SettingsStore::readDword(L"Options", L"a", 9, number));
  EXPECT_EQ(number, 5u) << "without the key the number stays";
  ASSERT_TRUE(SettingsStore::writeDword(L"Options", L"b", 7));
  EXPECT_FALSE(SettingsStore::readDword(L"Options", L"a", 9, number));
  EXPECT_EQ(number, 9u);
  EXPECT_TRUE(SettingsStore::readDword(L"Options", L"b", 9, number));
  EXPECT_EQ(number, 7u);
}

TEST_F(SettingsInFileTest, TheTypeIsNotChecked) {
  ASSERT_TRUE(SettingsStore::writeString(L"Options", L"text", L"A"));
  std::uint32_t number = 0;
  EXPECT_TRUE(SettingsStore::readDword(L"Options", L"text", 9, number));
  EXPECT_EQ(number, 0x41u);
  ASSERT_TRUE(SettingsStore::writeString(L"Options", L"text", L"longer"));
  EXPECT_FALSE(SettingsStore::readDword(L"Options", L"text", 9, number));
  EXPECT_EQ(number, 9u);
  ASSERT_TRUE(SettingsStore::writeDword(L"Options", L"number", 0x42));
  String text;
  EXPECT_TRUE(SettingsStore::readString(L"Options", L"number", text));
  EXPECT_STREQ(text.text(), L"B");
}

TEST_F(SettingsInFileTest, WordsHaveToBeAsManyAsWanted) {
  const std::uint32_t written[] = {1, 2, 3};
  std::uint32_t words[3] = {};
  ASSERT_TRUE(SettingsStore::writeBinary(L"Options", L"words", written, 3));
  EXPECT_TRUE(SettingsStore::readBinary(L"Options", L"words", words, 3));
  EXPECT_EQ(words[2], 3u);
  EXPECT_FALSE(SettingsStore::readBinary(L"Options", L"words", words, 2));
  EXPECT_FALSE(SettingsStore::readBinary(L"Options", L"none", words, 0));
}

TEST_F(SettingsInFileTest, EveryRowOfTheTableReadsBack) {
  for (const SettingRow& row : settings::kTable) {
    switch (row.kind) {
      case SettingKind::number: {
        std::uint32_t number = 0;
        ASSERT_TRUE(SettingsStore::write(row.setting, std::uint32_t{3}));
        EXPECT_TRUE(SettingsStore::read(row.setting, number));
        EXPECT_EQ(number, 3u) << row.name;
        break;
      }
      case SettingKind::text: {
        String text;
        ASSERT_TRUE(SettingsStore::write(row.setting, String(L"C:\\a\r\n\"b\"")));
        EXPECT_TRUE(SettingsStore::read(row.setting, text));
        EXPECT_STREQ(text.text(), L"C:\\a\r\n\"b\"") << row.name;
        break;
      }
      case SettingKind::words: {
        const std::uint32_t written[] = {1, 0xFFFFFFFF};
        std::uint32_t words[2] = {};
        ASSERT_TRUE(SettingsStore::write(row.setting, std::span<const std::uint32_t>(written)));
        EXPECT_TRUE(SettingsStore::read(row.setting, std::span<std::uint32_t>(words)));
        EXPECT_EQ(words[1], 0xFFFFFFFF) << row.name;
        break;
      }
    }
  }
}

/// What is written is a part of what was read: where that can't be read nothing else may get lost.
class SettingsInUseTest : public SettingsInFileTest {
 protected:
  /// Changes something again and again while another program has the file for itself every other moment.
  template <typename Change>
  void changeInBetween(const Change& change) {
    Value value;
    {
      const UniqueFile held = holdForOneself(path());
      ASSERT_TRUE(held);
      ASSERT_EQ(settingsFile_.read(kKey, L"a", value), Found::unreadable) << "from here on without waiting";
    }
    std::atomic<bool> isOver = false;
    std::thread other([&] {
      while (!isOver) holdForOneself(path()).reset();
    });
    int refused = 0;
    for (int i = 0; i < 150 || (refused == 0 && i < 4000); ++i) {
      if (settingsFile_.read(kKey, L"a", value) == Found::unreadable) ++refused;
      change(i);
    }
    isOver = true;
    other.join();
    EXPECT_GT(refused, 0);
  }
};

TEST_F(SettingsInUseTest, RecentFindsDontGetLost) {
  for (const wchar_t* text : {L"c", L"d", L"e", L"a", L"b"}) RecentFinds::remember(text);
  changeInBetween([](int i) { RecentFinds::remember(i % 2 == 0 ? L"a" : L"b"); });
  NameList finds;
  RecentFinds::list(finds);
  for (const wchar_t* text : {L"c", L"d", L"e"}) EXPECT_TRUE(finds.holds(text)) << text;
}

TEST_F(SettingsInUseTest, NorDoTheTextsKeptForOtherTables) {
  kepttexts::write(L"a.cdb", false, L"Books", L"one");
  changeInBetween([](int i) { kepttexts::write(L"a.cdb", false, L"Members", std::to_wstring(i)); });
  EXPECT_EQ(kepttexts::read(L"a.cdb", false, L"Books"), L"one");
}

TEST_F(SettingsInUseTest, NorDoTheWidthsOfTheirColumns) {
  ColumnWidths books(L"a.cdb", false, L"Books");
  books.set(L"Title", 120);
  books.keep();
  ColumnWidths members(L"a.cdb", false, L"Members");
  changeInBetween([&](int i) {
    members.set(L"Name", 100 + i);
    members.keep();
  });
  EXPECT_EQ(ColumnWidths(L"a.cdb", false, L"Books").of(L"Title"), 120);
  members.keep();
  EXPECT_EQ(ColumnWidths(L"a.cdb", false, L"Members").of(L"Name"), members.of(L"Name")) << "once it can be";
}

}  // namespace
