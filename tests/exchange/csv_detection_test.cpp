#include "platform/store/exchange/formats/csv_detection.h"

#include <gtest/gtest.h>

#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

char separatorOf(const std::string& file) {
  MemorySource source(file);
  char separator = '?';
  EXPECT_TRUE(detectSeparator(source, Encoding::utf8, &separator));
  return separator;
}

bool isJson(const std::string& file) {
  MemorySource source(file);
  bool is = false;
  EXPECT_TRUE(detectJson(source, Encoding::utf8, &is));
  return is;
}

TEST(CsvDetection, TheSeparatorIsTheOneThatPartsAllRecordsAlike) {
  EXPECT_EQ(separatorOf("a,b\n1,2\n"), ',');
  EXPECT_EQ(separatorOf("a;b\n1,5;2,5\n3,1;4\n"), ';');
  EXPECT_EQ(separatorOf("a\tb\n\"x;y\"\tz\n"), '\t');
  EXPECT_EQ(separatorOf("a|b|c\n1|2|3\n"), '|');
}

TEST(CsvDetection, SeparatorsInQuotesDoNotCount) {
  EXPECT_EQ(separatorOf("\"a,b,c\";d\n\"1,2,3\";e\n\"4,5,6\";f\n"), ';');
}

TEST(CsvDetection, WithoutAnySeparatorItIsTheComma) {
  EXPECT_EQ(separatorOf("a\nb\n"), ',');
  EXPECT_EQ(separatorOf(""), ',');
}

TEST(CsvDetection, ARecordThatTheSampleCutsOffDoesNotCount) {
  std::string file = "a;b;c\n";
  while (file.size() < 300'000) file += "text,text,text;" + std::string(40, 'x') + ";1\n";
  EXPECT_EQ(separatorOf(file), ';');
}

TEST(CsvDetection, JsonBeginsWithObjects) {
  for (const char* file : {"{\"a\":1}", "[{\"a\":1}]", " \n[ {\"a\":1}", "[]", "{}"})
    EXPECT_TRUE(isJson(file)) << file;
  for (const char* file : {"", "a,b\n", "[1,2]\n", "{a},b\n", "\"a\",b", "[x],y"})
    EXPECT_FALSE(isJson(file)) << file;
}

}  // namespace
}  // namespace store::exchange
