// Under which addresses browsers find the pages.
#include "platform/help/help_address.h"

#include <gtest/gtest.h>

namespace help {
namespace {

TEST(HelpAddressTest, AFileOutsideOfWineHasItsNameThere) {
  EXPECT_EQ(unixNameOf(L"Z:\\tmp\\\u00fc \u65e5.htm"), "/tmp/\xc3\xbc \xe6\x97\xa5.htm");
  EXPECT_EQ(nameForUser(L"Z:\\tmp\\\u00fc \u65e5.htm"), L"/tmp/\u00fc \u65e5.htm");
  EXPECT_EQ(addressOf(L"Z:\\tmp\\\u00fc \u65e5.htm", L""), "file:///tmp/%C3%BC%20%E6%97%A5.htm");
}

TEST(HelpAddressTest, ADriveThatIsNotThereLeavesThePathAsItIs) {
  EXPECT_EQ(unixNameOf(L"Q:\\help\\Quivane.htm"), "");
  EXPECT_EQ(nameForUser(L"Q:\\help\\Quivane.htm"), L"Q:\\help\\Quivane.htm");
  EXPECT_EQ(addressOf(L"Q:\\help\\Quivane.htm", L""), "file:///Q:/help/Quivane.htm");
  EXPECT_EQ(addressOf(L"Q:\\help\\Quivane.htm", L"Queries"), "file:///Q:/help/Quivane.htm#Queries");
}

TEST(HelpAddressTest, SignsThatMeanSomethingInAnAddressAreWrittenAsBytes) {
  EXPECT_EQ(addressOf(L"Q:\\a b\\50% #1\\\u00fc\u65e5\\it's \"&<>?.htm", L"Queries"),
            "file:///Q:/a%20b/50%25%20%231/%C3%BC%E6%97%A5/it%27s%20%22%26%3C%3E%3F.htm#Queries");
}

TEST(HelpAddressTest, ASharedFolderKeepsItsComputer) {
  EXPECT_EQ(addressOf(L"\\\\server\\share one\\Quivane.htm", L"").find("file://"), 0u);
  EXPECT_NE(addressOf(L"\\\\server\\share one\\Quivane.htm", L"").find("server/share%20one/Quivane.htm"),
            std::string::npos);
}

TEST(HelpAddressTest, ASignpostLeadsToTheAddress) {
  const std::string page = signpostTo("file:///a%20b/Quivane.htm#Queries");
  EXPECT_NE(page.find("<meta http-equiv=\"refresh\" content=\"0; url=file:///a%20b/Quivane.htm#Queries\">"),
            std::string::npos);
  EXPECT_NE(page.find("<a href=\"file:///a%20b/Quivane.htm#Queries\">"), std::string::npos);
}

}  // namespace
}  // namespace help
