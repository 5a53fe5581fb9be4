// What the help viewer understands of its command line.
#include "platform/help/help_topic.h"

#include <gtest/gtest.h>

namespace help {
namespace {

void expectTopic(std::wstring_view commandLine, std::wstring_view page, std::wstring_view anchor) {
  const Topic topic = topicOf(commandLine);
  EXPECT_EQ(topic.page, page) << std::wstring(commandLine).c_str();
  EXPECT_EQ(topic.anchor, anchor) << std::wstring(commandLine).c_str();
}

TEST(HelpTopicTest, ATopicOfTheProgramIsAPageAndAnAnchor) {
  expectTopic(L"\\Windows\\file:Quivane.htm#Queries", L"Quivane.htm", L"Queries");
  expectTopic(L"\"\\Windows\\file:Quivane.htm#Queries\"", L"Quivane.htm", L"Queries");
  expectTopic(L"\"C:\\a b\\peghelp.exe\" \\Windows\\file:Quivane.htm#Queries ", L"Quivane.htm", L"Queries");
  expectTopic(L"file:Other-page_2.htm#Some-place_2", L"Other-page_2.htm", L"Some-place_2");
}

TEST(HelpTopicTest, TheContentsAreTheBeginningOfTheManual) {
  expectTopic(L"\\Windows\\file:Quivane.htm#Main_Contents", L"Quivane.htm", L"");
  expectTopic(L"\\Windows\\file:Quivane.htm", L"Quivane.htm", L"");
  expectTopic(L"\\Windows\\file:Quivane.htm#", L"Quivane.htm", L"");
}

TEST(HelpTopicTest, NoTopicIsTheManual) {
  for (const wchar_t* line :
       {L"", L"\"C:\\peghelp.exe\"", L"peghelp.exe", L"file:", L"file: ", L"file:\"", L"#Queries"}) {
    expectTopic(line, L"Quivane.htm", L"");
  }
}

TEST(HelpTopicTest, APageElsewhereIsNotOpened) {
  for (const wchar_t* line : {L"file:..\\secret.htm", L"file:C:\\secret.htm", L"file:/etc/secret.htm",
                              L"file:Quivane.exe", L"file:.htm", L"file:Quivane.htm.exe", L"file:a b.htm",
                              L"file:%41.htm", L"file:\u00e9.htm", L"file:Quivane.htm?x#Queries"}) {
    expectTopic(line, L"Quivane.htm", L"");
  }
}

TEST(HelpTopicTest, WhatIsNoNameOfAPlaceIsTheBeginning) {
  for (const wchar_t* line : {L"file:Quivane.htm#a b", L"file:Quivane.htm#<script>", L"file:Quivane.htm#a#b",
                              L"file:Quivane.htm#..\\x", L"file:Quivane.htm#\u00e9"}) {
    expectTopic(line, L"Quivane.htm", L"");
  }
}

}  // namespace
}  // namespace help
