#include "owners/late_function.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

constinit const LateFunction<decltype(GetFileVersionInfoSizeW)> versionInfoSize{L"version.dll",
                                                                                "GetFileVersionInfoSizeW"};
constinit const LateFunction<decltype(GetFileVersionInfoSizeW), 7> ofNoModule{L"quivane_has_no_such.dll",
                                                                              "GetFileVersionInfoSizeW"};
constinit const LateFunction<decltype(lstrcpyW), nullptr> notInItsModule{L"version.dll", "lstrcpyW"};
constinit const LateFunction<decltype(SetLastError)> givesNothing{L"kernel32.dll", "SetLastError"};
constinit const LateFunction<decltype(SetLastError)> givesNothingAndIsMissing{L"version.dll", "SetLastError"};

TEST(LateFunctionTest, AFunctionOfTheSystemIsCalledEachTime) {
  for (int time = 0; time < 2; ++time) EXPECT_GT(versionInfoSize(L"kernel32.dll", nullptr), 0u);
  givesNothing(1234);
  EXPECT_EQ(GetLastError(), 1234u);
}

TEST(LateFunctionTest, WhereTheModuleOrTheFunctionIsMissingItsFailureIsGiven) {
  EXPECT_EQ(ofNoModule(L"kernel32.dll", nullptr), 7u);
  wchar_t text[] = L"as it was";
  EXPECT_EQ(notInItsModule(text, L"changed"), nullptr);
  EXPECT_STREQ(text, L"as it was");
  SetLastError(1234);
  givesNothingAndIsMissing(99);
  EXPECT_NE(GetLastError(), 99u);
}

}  // namespace
