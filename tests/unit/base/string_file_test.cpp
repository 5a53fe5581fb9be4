#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "base/string.h"
#include "gtest/gtest.h"
#include "owners/handles.h"
#include "tests/support/paths.h"
#include "tests/unit/base/allocation_probe.h"

namespace {

using Bytes = std::vector<unsigned char>;

class StringFileTest : public testing::Test {
 protected:
  UniqueFile openNew(DWORD access = GENERIC_READ | GENERIC_WRITE) {
    UniqueFile file(CreateFileW(folder_.file("text").c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_TRUE(file);
    return file;
  }

  /// A file with these bytes, at its start.
  UniqueFile fileOf(const Bytes& bytes) {
    UniqueFile file = openNew();
    DWORD written = 0;
    if (!bytes.empty()) {
      EXPECT_TRUE(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
    }
    EXPECT_EQ(written, bytes.size());
    rewind(file);
    return file;
  }

  String read(const Bytes& bytes) {
    const UniqueFile file = fileOf(bytes);
    return String::fromFile(file.get());
  }

  Bytes bytesOf(const String& text) {
    const UniqueFile file = openNew();
    EXPECT_TRUE(text.writeToFile(file.get()));
    rewind(file);
    Bytes bytes(GetFileSize(file.get(), nullptr));
    DWORD arrived = 0;
    EXPECT_TRUE(ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &arrived, nullptr));
    EXPECT_EQ(arrived, bytes.size());
    return bytes;
  }

  static void rewind(const UniqueFile& file) { SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN); }

  static DWORD position(const UniqueFile& file) {
    return SetFilePointer(file.get(), 0, nullptr, FILE_CURRENT);
  }

  testsupport::TempFolder folder_;
};

TEST_F(StringFileTest, TwoCharactersAreNineBytes) {
  EXPECT_EQ(bytesOf(L"AB"), (Bytes{0x05, 0, 0, 0, 0x41, 0, 0x42, 0, 0}));
}

TEST_F(StringFileTest, TheEmptyValueIsFourZeroBytes) {
  EXPECT_EQ(bytesOf(String()), (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(bytesOf(L""), (Bytes{0, 0, 0, 0}));
}

TEST_F(StringFileTest, CharactersAreLittleEndian) {
  EXPECT_EQ(bytesOf(L"\u65E5"), (Bytes{0x03, 0, 0, 0, 0xE5, 0x65, 0}));
}

TEST_F(StringFileTest, ReadsWhatItWrites) {
  const String texts[] = {L"", L"A", L"two words", L"\u0391\u0434\u65E5\xD83D\xDE00 \xD800", L"line\r\nline"};
  const UniqueFile file = openNew();
  for (const String& text : texts) ASSERT_TRUE(text.writeToFile(file.get()));
  const DWORD end = position(file);
  rewind(file);
  for (const String& text : texts) EXPECT_STREQ(String::fromFile(file.get()).text(), text.text());
  EXPECT_EQ(position(file), end);
}

TEST_F(StringFileTest, ReadsAHundredThousandCharacters) {
  std::wstring text;
  for (int i = 0; i < 100'000; ++i) text += static_cast<wchar_t>(L'\u4E00' + i % 20'000);
  const UniqueFile file = openNew();
  ASSERT_TRUE(String(text.c_str()).writeToFile(file.get()));
  ASSERT_TRUE(String(L"next").writeToFile(file.get()));
  rewind(file);
  EXPECT_EQ(String::fromFile(file.get()).text(), text);
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"next");
}

TEST_F(StringFileTest, ReadsFromAPipeThatDeliversInPieces) {
  UniqueFile reading;
  UniqueFile writing;
  HANDLE ends[2] = {};
  ASSERT_TRUE(CreatePipe(&ends[0], &ends[1], nullptr, 0));
  reading.reset(ends[0]);
  writing.reset(ends[1]);
  std::thread writer([&] {
    for (const unsigned char byte : Bytes{0x05, 0, 0, 0, 0x41, 0, 0x42, 0, 0}) {
      DWORD written = 0;
      WriteFile(writing.get(), &byte, 1, &written, nullptr);
      // The next byte comes only when this one was taken.
      for (DWORD waiting = 1; waiting != 0;) {
        if (!PeekNamedPipe(reading.get(), nullptr, 0, nullptr, &waiting, nullptr)) break;
        SwitchToThread();
      }
    }
    writing.reset();
  });
  const String text = String::fromFile(reading.get());
  writer.join();
  EXPECT_STREQ(text.text(), L"AB");
}

TEST_F(StringFileTest, AnEmptyFileGivesTheEmptyValue) {
  EXPECT_STREQ(read({}).text(), L"");
}

TEST_F(StringFileTest, ATruncatedCountGivesTheEmptyValue) {
  EXPECT_STREQ(read({5, 0, 0}).text(), L"");
}

TEST_F(StringFileTest, ATruncatedTextGivesTheWholeCharactersThatAreThere) {
  EXPECT_STREQ(read({7, 0, 0, 0, 0x41, 0, 0x42, 0}).text(), L"AB");
  EXPECT_STREQ(read({7, 0, 0, 0, 0x41, 0, 0x42}).text(), L"A");
  EXPECT_STREQ(read({7, 0, 0, 0}).text(), L"");
}

TEST_F(StringFileTest, AMissingLastByteIsTolerated) {
  EXPECT_STREQ(read({5, 0, 0, 0, 0x41, 0, 0x42, 0}).text(), L"AB");
}

TEST_F(StringFileTest, AnEvenCountIsThatManyBytesOfText) {
  const UniqueFile file = fileOf({4, 0, 0, 0, 0x41, 0, 0x42, 0, 3, 0, 0, 0, 0x43, 0, 0});
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"AB");
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"C");
}

TEST_F(StringFileTest, ALastByteOtherThanZeroIsNoCharacter) {
  EXPECT_STREQ(read({5, 0, 0, 0, 0x41, 0, 0x42, 0, 0x43}).text(), L"AB");
}

TEST_F(StringFileTest, ACountOfOneIsTheEmptyText) {
  const UniqueFile file = fileOf({1, 0, 0, 0, 0, 3, 0, 0, 0, 0x43, 0, 0});
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"");
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"C");
}

TEST_F(StringFileTest, AZeroCharacterEndsTheText) {
  const UniqueFile file = fileOf({7, 0, 0, 0, 0x41, 0, 0, 0, 0x42, 0, 0, 3, 0, 0, 0, 0x43, 0, 0});
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"A");
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"C");
}

TEST_F(StringFileTest, AnAbsurdCountGivesTheEmptyValueAndTakesNoMemory) {
  for (const unsigned char lowByte : Bytes{0xFF, 0xFE}) {
    const UniqueFile file = fileOf({lowByte, 0xFF, 0xFF, 0xFF, 0x41, 0, 0x42, 0, 0});
    const AllocationProbe probe;
    EXPECT_STREQ(String::fromFile(file.get()).text(), L"");
    EXPECT_LT(probe.largestLength(), 64u * 1024);
  }
}

TEST_F(StringFileTest, ACountJustAboveTheLimitGivesTheEmptyValue) {
  // 0x04000000 is the limit of 64 MiB itself.
  EXPECT_STREQ(read({0x01, 0, 0, 0x04, 0x41, 0, 0}).text(), L"");
  EXPECT_STREQ(read({0x00, 0, 0, 0x04, 0x41, 0, 0}).text(), L"A");
}

TEST_F(StringFileTest, ACountThatLiesTakesMemoryOnlyForWhatIsThere) {
  const UniqueFile file = fileOf({0xFF, 0xFF, 0xFF, 0x03, 0x41, 0, 0x42, 0, 0});
  const AllocationProbe probe;
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"AB");
  EXPECT_LT(probe.largestLength(), 64u * 1024);
}

TEST_F(StringFileTest, AHandleThatIsNoFileGivesTheEmptyValue) {
  EXPECT_STREQ(String::fromFile(INVALID_HANDLE_VALUE).text(), L"");
  EXPECT_STREQ(String::fromFile(nullptr).text(), L"");
  const UniqueKernelObject event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  EXPECT_STREQ(String::fromFile(event.get()).text(), L"");
}

TEST_F(StringFileTest, AFileOpenForWritingOnlyGivesTheEmptyValue) {
  const UniqueFile file = openNew(GENERIC_WRITE);
  EXPECT_STREQ(String::fromFile(file.get()).text(), L"");
}

TEST_F(StringFileTest, WritingSaysThatItFailed) {
  EXPECT_FALSE(String(L"AB").writeToFile(INVALID_HANDLE_VALUE));
  EXPECT_FALSE(String().writeToFile(INVALID_HANDLE_VALUE));
  const UniqueFile readOnly = openNew(GENERIC_READ);
  EXPECT_FALSE(String(L"AB").writeToFile(readOnly.get()));
}

TEST_F(StringFileTest, WritingSaysThatNotEveryByteWasTaken) {
  HANDLE ends[2] = {};
  ASSERT_TRUE(CreatePipe(&ends[0], &ends[1], nullptr, 64));
  const UniqueFile reading(ends[0]);
  const UniqueFile writing(ends[1]);
  DWORD mode = PIPE_NOWAIT;
  ASSERT_TRUE(SetNamedPipeHandleState(writing.get(), &mode, nullptr, nullptr));
  EXPECT_FALSE(String(std::wstring(1'000'000, L'a').c_str()).writeToFile(writing.get()));
}

TEST_F(StringFileTest, ATextTooLongToBeReadAgainIsNotWritten) {
  const std::size_t longest = (String::kMaxFileByteCount - 1) / 2;
  const UniqueFile file = openNew();
  EXPECT_FALSE(String(std::wstring(longest + 1, L'a').c_str()).writeToFile(file.get()));
  EXPECT_EQ(GetFileSize(file.get(), nullptr), 0u);
}

}  // namespace
