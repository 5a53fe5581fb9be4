#include "platform/store/dsn/file_dsn.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "platform/store/sqlite/database_file.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

const std::string kLink = "[ODBC]\r\nDRIVER=PostgreSQL Unicode\r\nSERVER=db.example\r\nDATABASE=books\r\n";

FileDsn read(std::string_view bytes) {
  FileDsn dsn;
  const Status status = readFileDsn(bytes, &dsn);
  EXPECT_TRUE(status) << status.message();
  return dsn;
}

/// The reason why it can't be read, and that nothing was stored.
std::string refusalOf(std::string_view bytes) {
  FileDsn dsn;
  dsn.entries.push_back({"untouched", "yes"});
  const Status status = readFileDsn(bytes, &dsn);
  EXPECT_EQ(ErrorCode::cannotOpen, status.code());
  EXPECT_EQ(1u, dsn.entries.size());
  return status.message();
}

std::string inUtf16(std::string_view ascii, bool isLittle) {
  std::string bytes = isLittle ? "\xFF\xFE" : "\xFE\xFF";
  for (const char sign : ascii) {
    if (!isLittle) bytes += '\0';
    bytes += sign;
    if (isLittle) bytes += '\0';
  }
  return bytes;
}

TEST(FileDsnTest, TheEntriesAreThoseOfTheFileInItsOrder) {
  const FileDsn dsn = read(kLink);
  ASSERT_EQ(3u, dsn.entries.size());
  EXPECT_EQ("DRIVER", dsn.entries[0].keyword);
  EXPECT_EQ("PostgreSQL Unicode", dsn.entries[0].value);
  ASSERT_NE(nullptr, dsn.find("server"));
  EXPECT_EQ("db.example", *dsn.find("server"));
  EXPECT_EQ(nullptr, dsn.find("PWD"));
}

TEST(FileDsnTest, UnknownKeysAreKept) {
  EXPECT_EQ("7", *read(kLink + "Whatever=7\n").find("WHATEVER"));
}

TEST(FileDsnTest, EveryLineEndAndByteOrderMarkIsTaken) {
  for (const char* end : {"\n", "\r\n", "\r"}) {
    const std::string e = end;
    const std::string text = "[ODBC]" + e + "DRIVER=d" + e + e + "; a comment" + e + "UID = me " + e;
    for (const std::string& bytes :
         {text, "\xEF\xBB\xBF" + text, inUtf16(text, true), inUtf16(text, false)}) {
      ASSERT_TRUE(isFileDsn(bytes));
      const FileDsn dsn = read(bytes);
      ASSERT_EQ(2u, dsn.entries.size());
      EXPECT_EQ("d", *dsn.find("DRIVER"));
      EXPECT_EQ("me", *dsn.find("UID"));
    }
  }
}

TEST(FileDsnTest, OnlyAFirstLineThatSaysSoMakesALink) {
  EXPECT_TRUE(isFileDsn("[ODBC]"));
  EXPECT_TRUE(isFileDsn("[odbc] \t\nDRIVER=d"));
  EXPECT_FALSE(isFileDsn(""));
  EXPECT_FALSE(isFileDsn("[ODBC"));
  EXPECT_FALSE(isFileDsn("[ODBC]x"));
  EXPECT_FALSE(isFileDsn("\n[ODBC]\n"));
  EXPECT_FALSE(isFileDsn(" [ODBC]\n"));
  EXPECT_FALSE(isFileDsn("[ODBC 32bit Data Sources]\n"));
  EXPECT_FALSE(isFileDsn(std::string_view("SQLite format 3\0", 16)));
  EXPECT_FALSE(isFileDsn(std::string(100000, '\xFF')));
}

TEST(FileDsnTest, ValuesMayStandInBracesAndHoldEverySign) {
  const FileDsn dsn = read("[ODBC]\nDRIVER={My driver}\nPWD={a;b}}c=d}\nUID={half\n");
  EXPECT_EQ("My driver", *dsn.find("DRIVER"));
  EXPECT_EQ("a;b}c=d", *dsn.find("PWD"));
  EXPECT_EQ("{half", *dsn.find("UID"));
  EXPECT_EQ("DRIVER={My driver};PWD={a;b}}c=d};UID={{half};", connectionTextOf(dsn));
}

TEST(FileDsnTest, APlainValueNeedsNoBracesButADriversHasThem) {
  EXPECT_EQ("DRIVER={d};SERVER=127.0.0.1;PORT=5432;UID=;",
            connectionTextOf(read("[ODBC]\nDRIVER=d\nSERVER=127.0.0.1\nPORT=5432\nUID=\n")));
}

TEST(FileDsnTest, SignsThatADriverReadsOtherwiseOutsideBracesStandInThem) {
  EXPECT_EQ("DRIVER={d};PWD={a+b};UID={c%41};",
            connectionTextOf(read("[ODBC]\nDRIVER=d\nPWD=a+b\nUID=c%41\n")));
}

TEST(FileDsnTest, TheFirstOfTwoCountsAndAnotherSectionIsNotRead) {
  const FileDsn dsn =
      read("[ODBC]\nDRIVER=d\nUID=first\nuid=second\n[Others]\nno line of ours\nSAVEFILE=x\n");
  ASSERT_EQ(2u, dsn.entries.size());
  EXPECT_EQ("first", *dsn.find("UID"));
}

TEST(FileDsnTest, WhatIsNoLinkIsRefusedWithTheLineAndWithoutItsValues) {
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\n").find("names no driver"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nDRIVER=\nDSN=\n").find("names no driver"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nDRIVER=d\n\nsecret\n").find("line 4"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\n=secret\n").find("line 2"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nA;B=secret\n").find("line 2"));
  EXPECT_NE(std::string::npos, refusalOf(std::string("[ODBC]\nDRIVER=d\0x\n", 18)).find("zero character"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nDRIVER=d\xFC\n").find("UTF-8"));
  EXPECT_NE(std::string::npos, refusalOf("no link").find("first line"));
  for (const char* bytes : {"[ODBC]\nDRIVER=d\nsecret\n", "[ODBC]\n=secret\n", "[ODBC]\nSAVEFILE=secret\n"})
    EXPECT_EQ(std::string::npos, refusalOf(bytes).find("secret"));
}

TEST(FileDsnTest, OtherFilesAreNeitherReadNorWrittenForALink) {
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nDRIVER=d\nFileDSN=x.dsn\n").find("another file"));
  EXPECT_NE(std::string::npos, refusalOf("[ODBC]\nDRIVER=d\nsavefile=x.dsn\n").find("another file"));
}

TEST(FileDsnTest, ALinkHasABound) {
  const std::string start = "[ODBC]\nDRIVER=d\n;";
  read(start + std::string(kMostFileDsnBytes - start.size(), 'x'));
  EXPECT_NE(std::string::npos,
            refusalOf(start + std::string(kMostFileDsnBytes - start.size() + 1, 'x')).find("too long"));
}

TEST(FileDsnTest, FilesAreRecognisedAndRead) {
  testsupport::TempFolder folder;
  const std::filesystem::path path = folder.file("link.cdb");
  const std::string name = utf8Of(path);
  FileDsn dsn;
  EXPECT_FALSE(isFileDsnAt(name));
  EXPECT_EQ(ErrorCode::cannotOpen, readFileDsnAt(name, &dsn).code());
  EXPECT_FALSE(isFileDsnAt(utf8Of(folder.path()))) << "a folder";
  EXPECT_FALSE(isFileDsnAt(name + std::string("\0.cdb", 5)));
  writeBytes(path, kLink);
  EXPECT_TRUE(isFileDsnAt(name));
  EXPECT_TRUE(readFileDsnAt(name, &dsn));
  writeBytes(path, kLink + std::string(kMostFileDsnBytes, ';'));
  EXPECT_EQ(ErrorCode::cannotOpen, readFileDsnAt(name, &dsn).code());
}

TEST(FileDsnTest, ALinkIsNeitherDeletedNorReplacedByTheStatementsOfDatabases) {
  testsupport::TempFolder folder;
  const std::filesystem::path path = folder.file("link.cdb");
  writeBytes(path, kLink);
  const Status dropped = dropDatabase(utf8Of(path));
  EXPECT_EQ(ErrorCode::illegalOperation, dropped.code());
  EXPECT_NE(std::string::npos, dropped.message().find("link to a server's database")) << dropped.message();
  EXPECT_EQ(ErrorCode::fileExists, createDatabase(utf8Of(path)).code());
  EXPECT_EQ(kLink, bytesOf(path));
}

}  // namespace
}  // namespace store
