#include "base/settings/settings_store.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/unit/base/allocation_probe.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

constexpr const wchar_t* kOptions = L"Options";

class SettingsStoreTest : public RegistryTest {
 protected:
  /// readString into a String that held "before"; the result comes through `found`.
  static std::wstring readString(const wchar_t* name, bool& found, const wchar_t* subkey = kOptions) {
    String value = L"before";
    found = SettingsStore::readString(subkey, name, value);
    return value.text();
  }
};

struct Entry {
  const wchar_t* subkey;
  const wchar_t* name;
};

TEST_F(SettingsStoreTest, TheRootAndTheSubkeysAreTheOnesOnDisk) {
  EXPECT_STREQ(SettingsStore::kRoot, L"Software\\MorvaleSoftware\\Quivane for Pocket PC");
  EXPECT_STREQ(SettingsStore::kOptions, L"Options");
  EXPECT_STREQ(SettingsStore::kRecentUserFinds, L"RecentUserFinds");
  EXPECT_STREQ(SettingsStore::kPassword, L"Password");
}

TEST_F(SettingsStoreTest, EveryNumberIsADwordAndReadsBack) {
  const Entry entries[] = {
      {kOptions, L"UsePassword"},        {kOptions, L"WarningOnDeletion"},
      {kOptions, L"GenUpdateRights"},    {kOptions, L"OpenLastTableOnStartup"},
      {kOptions, L"RebarsAtTop"},        {kOptions, L"TabLabelStyle"},
      {kOptions, L"CheckAllFields"},     {kOptions, L"MatchCase"},
      {kOptions, L"OpenQueryOnStartup"},
  };
  std::uint32_t written = 0;
  for (const Entry& entry : entries) {
    ++written;
    std::uint32_t value = 77;
    ASSERT_TRUE(SettingsStore::writeDword(entry.subkey, entry.name, written));
    EXPECT_EQ(raw(entry.subkey, entry.name), dwordValue(written));
    EXPECT_TRUE(SettingsStore::readDword(entry.subkey, entry.name, 0, value));
    EXPECT_EQ(value, written);
  }
}

TEST_F(SettingsStoreTest, EveryTextIsAStringWithItsTerminatorAndReadsBack) {
  const Entry entries[] = {
      {kOptions, L"LastDBOnStartup"}, {kOptions, L"LastTableOnStartup"}, {kOptions, L"LastQueryOnStartup"},
      {kOptions, L"LastSQLQuery"},    {L"RecentUserFinds", L"FI1"},      {L"RecentUserFinds", L"FI5"},
      {L"Password", L"PasswordItem"},
  };
  for (const Entry& entry : entries) {
    const std::wstring text = std::wstring(entry.name) + L" \u0391\u0434\u65E5\xD83D\xDE00";
    ASSERT_TRUE(SettingsStore::writeString(entry.subkey, entry.name, text.c_str()));
    EXPECT_EQ(raw(entry.subkey, entry.name), textValue(text));
    bool found = false;
    EXPECT_EQ(readString(entry.name, found, entry.subkey), text);
    EXPECT_TRUE(found);
  }
}

TEST_F(SettingsStoreTest, TheColorsAreSixtyBytesOfBinaryAndReadBack) {
  std::uint32_t written[15];
  for (std::uint32_t i = 0; i < 15; ++i) written[i] = 0x00FFFFFF - i;
  ASSERT_TRUE(SettingsStore::writeBinary(kOptions, L"GeneralAppColors", written, 15));
  const Value stored = raw(kOptions, L"GeneralAppColors");
  EXPECT_EQ(stored.type, static_cast<DWORD>(REG_BINARY));
  ASSERT_EQ(stored.bytes.size(), 60u);
  EXPECT_EQ(std::memcmp(stored.bytes.data(), written, 60), 0);
  std::uint32_t read[15] = {};
  EXPECT_TRUE(SettingsStore::readBinary(kOptions, L"GeneralAppColors", read, 15));
  EXPECT_EQ(std::memcmp(read, written, 60), 0);
}

TEST_F(SettingsStoreTest, AnEmptyStringIsTwoBytesAndReadsBackEmpty) {
  ASSERT_TRUE(SettingsStore::writeString(kOptions, L"LastDBOnStartup", String()));
  EXPECT_EQ(raw(kOptions, L"LastDBOnStartup"), (Value{REG_SZ, {0, 0}}));
  bool found = false;
  EXPECT_EQ(readString(L"LastDBOnStartup", found), L"");
  EXPECT_TRUE(found);
}

/// With and without a terminator, and with half a character at the end.
TEST_F(SettingsStoreTest, TextsOfEachLengthAreReadWhole) {
  for (std::size_t length = 0; length <= 300; ++length) {
    std::wstring text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<wchar_t>(L'a' + i % 26);
    const Bytes bare = bytesOfText(text);
    Bytes withHalf = bare;
    withHalf.push_back('x');
    for (const Bytes& bytes : {bare, withHalf, bytesOfText(text + L'\0')}) {
      setRaw(kOptions, L"LastSQLQuery", REG_SZ, bytes);
      bool found = false;
      const std::wstring read = readString(L"LastSQLQuery", found);
      ASSERT_TRUE(found) << bytes.size();
      ASSERT_EQ(read.substr(0, length), text) << bytes.size();
      ASSERT_LE(read.size(), length + bytes.size() % 2);
    }
  }
}

TEST_F(SettingsStoreTest, RowsThatFollowEachOtherAreReadTogether) {
  String texts[5] = {L"before", L"before", L"before", L"before", L"before"};
  EXPECT_TRUE(SettingsStore::findAll(Setting::recentFind, texts));
  for (const String& text : texts) EXPECT_STREQ(text.text(), L"") << "without the key";
  const std::wstring longText(1000, L'\u0416');
  ASSERT_TRUE(SettingsStore::writeString(L"RecentUserFinds", L"FI2", L"second"));
  ASSERT_TRUE(SettingsStore::writeString(L"RecentUserFinds", L"FI5", longText.c_str()));
  texts[0] = L"before";
  EXPECT_TRUE(SettingsStore::findAll(Setting::recentFind, texts));
  EXPECT_STREQ(texts[0].text(), L"");
  EXPECT_STREQ(texts[1].text(), L"second");
  EXPECT_STREQ(texts[3].text(), L"");
  EXPECT_STREQ(texts[4].text(), longText.c_str());
}

TEST_F(SettingsStoreTest, NumbersThatFollowEachOtherAreReadAndWrittenTogether) {
  std::uint32_t numbers[2] = {7, 7};
  SettingsStore::readAll(Setting::checkAllFields, numbers);
  EXPECT_EQ(numbers[0], 0u) << "without the key";
  EXPECT_EQ(numbers[1], 0u);
  const std::uint32_t written[2] = {1, 2};
  EXPECT_TRUE(SettingsStore::writeAll(Setting::checkAllFields, written));
  EXPECT_EQ(raw(kOptions, L"CheckAllFields"), dwordValue(1));
  EXPECT_EQ(raw(kOptions, L"MatchCase"), dwordValue(2));
  setRaw(kOptions, L"CheckAllFields", REG_BINARY, {1, 2, 3, 4, 5});
  SettingsStore::readAll(Setting::checkAllFields, numbers);
  EXPECT_EQ(numbers[0], 0u) << "too long";
  EXPECT_EQ(numbers[1], 2u);
  forbidWriting();
  EXPECT_FALSE(SettingsStore::writeAll(Setting::checkAllFields, written));
}

TEST_F(SettingsStoreTest, ALongerValueIsReplacedByAShorter) {
  ASSERT_TRUE(SettingsStore::writeString(kOptions, L"LastSQLQuery", L"Select * from [Books]"));
  ASSERT_TRUE(SettingsStore::writeString(kOptions, L"LastSQLQuery", L"x"));
  EXPECT_EQ(raw(kOptions, L"LastSQLQuery"), textValue(L"x"));
}

TEST_F(SettingsStoreTest, ValuesOfOneNameInTwoSubkeysAreTwoValues) {
  ASSERT_TRUE(SettingsStore::writeDword(L"Options", L"Same", 1));
  ASSERT_TRUE(SettingsStore::writeDword(L"Password", L"Same", 2));
  std::uint32_t value = 0;
  EXPECT_TRUE(SettingsStore::readDword(L"Options", L"Same", 0, value));
  EXPECT_EQ(value, 1u);
}

TEST_F(SettingsStoreTest, WithoutTheKeyReadingLeavesTheTargets) {
  bool found = true;
  EXPECT_EQ(readString(L"LastDBOnStartup", found), L"before");
  EXPECT_FALSE(found);
  std::uint32_t number = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 77u) << "the default is for a missing value, not for a missing key";
  std::uint32_t words[1] = {77};
  EXPECT_FALSE(SettingsStore::readBinary(kOptions, L"GeneralAppColors", words, 1));
}

TEST_F(SettingsStoreTest, ReadingDoesNotMakeTheKey) {
  bool found = true;
  readString(L"LastDBOnStartup", found);
  EXPECT_FALSE(keyExists(kOptions));
}

TEST_F(SettingsStoreTest, WithTheKeyButNoValueANumberBecomesTheDefault) {
  makeKey(kOptions);
  std::uint32_t number = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 5u);
}

TEST_F(SettingsStoreTest, WithTheKeyButNoValueATextStays) {
  makeKey(kOptions);
  bool found = true;
  EXPECT_EQ(readString(L"LastDBOnStartup", found), L"before");
  EXPECT_FALSE(found);
  std::uint32_t words[1] = {77};
  EXPECT_FALSE(SettingsStore::readBinary(kOptions, L"GeneralAppColors", words, 1));
}

TEST_F(SettingsStoreTest, ADeletedKeyIsMadeAgain) {
  ASSERT_TRUE(SettingsStore::writeDword(kOptions, L"UsePassword", 1));
  ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot), ERROR_SUCCESS);
  std::uint32_t number = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 77u);
  EXPECT_TRUE(SettingsStore::writeDword(kOptions, L"UsePassword", 1));
  EXPECT_EQ(raw(kOptions, L"UsePassword"), dwordValue(1));
}

TEST_F(SettingsStoreTest, ANumberOfAnotherTypeIsReadAsItsBytes) {
  setRaw(kOptions, L"UsePassword", REG_BINARY, {1, 2, 3, 4});
  std::uint32_t number = 0;
  EXPECT_TRUE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 0x04030201u);
}

TEST_F(SettingsStoreTest, AShortNumberIsCompletedWithZeros) {
  setRaw(kOptions, L"UsePassword", REG_BINARY, {1, 2});
  std::uint32_t number = 0xFFFFFFFF;
  EXPECT_TRUE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 0x0201u);
}

TEST_F(SettingsStoreTest, AValueTooLongForANumberGivesTheDefault) {
  setRaw(kOptions, L"UsePassword", REG_BINARY, {1, 2, 3, 4, 5});
  std::uint32_t number = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 5u);
  setRaw(kOptions, L"UsePassword", REG_SZ, bytesOfText(std::wstring(L"a text") + L'\0'));
  number = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, L"UsePassword", 5, number));
  EXPECT_EQ(number, 5u);
}

TEST_F(SettingsStoreTest, ATextOfAnotherTypeIsReadAsItsBytes) {
  setRaw(kOptions, L"LastSQLQuery", REG_DWORD, {0x41, 0, 0x42, 0});
  bool found = false;
  EXPECT_EQ(readString(L"LastSQLQuery", found), L"AB");
  EXPECT_TRUE(found);
}

TEST_F(SettingsStoreTest, ATextStoredWithoutItsTerminatorEndsWhereItsBytesDo) {
  const AllocationProbe probe;
  setRaw(kOptions, L"LastSQLQuery", REG_BINARY, {0x41, 0, 0x42, 0, 0x43, 0});
  bool found = false;
  EXPECT_EQ(readString(L"LastSQLQuery", found), L"ABC");
  setRaw(kOptions, L"LastSQLQuery", REG_BINARY, {0x41, 0, 0x42});
  EXPECT_EQ(readString(L"LastSQLQuery", found), L"AB");
}

TEST_F(SettingsStoreTest, ATextEndsAtItsFirstZeroCharacter) {
  setRaw(kOptions, L"LastSQLQuery", REG_MULTI_SZ, {0x41, 0, 0, 0, 0x42, 0, 0, 0, 0, 0});
  bool found = false;
  EXPECT_EQ(readString(L"LastSQLQuery", found), L"A");
}

TEST_F(SettingsStoreTest, AValueWithoutBytesIsTheEmptyText) {
  setRaw(kOptions, L"LastSQLQuery", REG_SZ, {});
  bool found = false;
  EXPECT_EQ(readString(L"LastSQLQuery", found), L"");
  EXPECT_TRUE(found);
}

TEST_F(SettingsStoreTest, BinaryOfAnotherLengthIsNotRead) {
  std::uint32_t words[16] = {};
  for (const std::size_t length : {0u, 4u, 56u, 59u, 61u, 64u, 4096u}) {
    setRaw(kOptions, L"GeneralAppColors", REG_BINARY, Bytes(length, 0x11));
    EXPECT_FALSE(SettingsStore::readBinary(kOptions, L"GeneralAppColors", words, 15)) << length;
  }
  EXPECT_EQ(words[15], 0u) << "nothing may be written past the words asked for";
}

TEST_F(SettingsStoreTest, ASixtyThreeWordBufferIsWrittenAndReadWhole) {
  std::uint32_t written[63];
  for (std::uint32_t i = 0; i < 63; ++i) written[i] = i * 0x01010101u;
  ASSERT_TRUE(SettingsStore::writeBinary(kOptions, L"Words", written, 63));
  EXPECT_EQ(raw(kOptions, L"Words").bytes.size(), 252u);
  std::uint32_t read[63] = {};
  EXPECT_TRUE(SettingsStore::readBinary(kOptions, L"Words", read, 63));
  EXPECT_EQ(std::memcmp(read, written, sizeof read), 0);
  EXPECT_FALSE(SettingsStore::readBinary(kOptions, L"Words", read, 62));
}

TEST_F(SettingsStoreTest, BinaryOfNoWordsIsWrittenAndRead) {
  const std::uint32_t word = 1;
  ASSERT_TRUE(SettingsStore::writeBinary(kOptions, L"Words", &word, 0));
  EXPECT_EQ(raw(kOptions, L"Words"), (Value{REG_BINARY, {}}));
  std::uint32_t read = 77;
  EXPECT_TRUE(SettingsStore::readBinary(kOptions, L"Words", &read, 0));
  EXPECT_EQ(read, 77u);
}

TEST_F(SettingsStoreTest, LongTextsSurvive) {
  const std::wstring text(100'000, L'\u0416');
  ASSERT_TRUE(SettingsStore::writeString(kOptions, L"LastSQLQuery", text.c_str()));
  bool found = false;
  EXPECT_EQ(readString(L"LastSQLQuery", found), text);
}

TEST_F(SettingsStoreTest, AValueNameLongerThanThePathBufferIsANameLikeAnyOther) {
  const std::wstring name(1'000, L'n');
  ASSERT_TRUE(SettingsStore::writeDword(kOptions, name.c_str(), 9));
  std::uint32_t value = 0;
  EXPECT_TRUE(SettingsStore::readDword(kOptions, name.c_str(), 0, value));
  EXPECT_EQ(value, 9u);
}

TEST_F(SettingsStoreTest, AValueNameLongerThanTheSystemTakesIsNotStored) {
  const std::wstring name(20'000, L'n');
  EXPECT_TRUE(SettingsStore::writeDword(kOptions, name.c_str(), 9)) << "the key was opened";
  std::uint32_t value = 77;
  EXPECT_FALSE(SettingsStore::readDword(kOptions, name.c_str(), 5, value));
  EXPECT_EQ(value, 5u);
}

TEST_F(SettingsStoreTest, TheLongestSubkeyThatFitsThePathBufferWorks) {
  const std::size_t longest = SettingsStore::kPathBufferCount - 1 - pathOf(L"").size();
  const std::wstring subkey(longest, L'k');
  EXPECT_TRUE(SettingsStore::writeDword(subkey.c_str(), L"Value", 9));
  std::uint32_t value = 0;
  EXPECT_TRUE(SettingsStore::readDword(subkey.c_str(), L"Value", 0, value));
  EXPECT_EQ(value, 9u);
}

TEST_F(SettingsStoreTest, ASubkeyTooLongForThePathBufferCantBeOpened) {
  const std::size_t longest = SettingsStore::kPathBufferCount - 1 - pathOf(L"").size();
  for (const std::size_t length : {longest + 1, std::size_t{300}, std::size_t{100'000}}) {
    const std::wstring subkey(length, L'k');
    std::uint32_t word = 77;
    String text = L"before";
    EXPECT_FALSE(SettingsStore::writeDword(subkey.c_str(), L"Value", 9));
    EXPECT_FALSE(SettingsStore::writeString(subkey.c_str(), L"Value", L"x"));
    EXPECT_FALSE(SettingsStore::writeBinary(subkey.c_str(), L"Value", &word, 1));
    EXPECT_FALSE(SettingsStore::readDword(subkey.c_str(), L"Value", 5, word));
    EXPECT_FALSE(SettingsStore::readString(subkey.c_str(), L"Value", text));
    EXPECT_FALSE(SettingsStore::readBinary(subkey.c_str(), L"Value", &word, 1));
    EXPECT_EQ(word, 77u);
    EXPECT_STREQ(text.text(), L"before");
  }
}

TEST_F(SettingsStoreTest, WritingSaysThatTheKeyCantBeMade) {
  forbidWriting();
  const std::uint32_t word = 1;
  EXPECT_FALSE(SettingsStore::writeDword(kOptions, L"UsePassword", 1));
  EXPECT_FALSE(SettingsStore::writeString(kOptions, L"LastDBOnStartup", L"x"));
  EXPECT_FALSE(SettingsStore::writeBinary(kOptions, L"GeneralAppColors", &word, 1));
}

}  // namespace
