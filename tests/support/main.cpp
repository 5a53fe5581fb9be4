// The main function of every test program. Unlike GoogleTest's own it fails when no test was run: an
// empty program, a misspelt filter and a program whose tests were all skipped prove nothing.
#include <cstdio>

#include "gmock/gmock.h"
#include "tests/support/process.h"

int main(int argc, char** argv) {
  testsupport::endQuietlyOnCrash();
  testing::InitGoogleMock(&argc, argv);
  if (argc > 1) {
    std::fprintf(stderr, "unknown argument: %s\n", argv[1]);
    return 2;
  }
  const int result = RUN_ALL_TESTS();
  const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
  if (!GTEST_FLAG_GET(list_tests) && tests.successful_test_count() + tests.failed_test_count() == 0) {
    std::fprintf(stderr, "no test was run\n");
    return 1;
  }
  return result;
}
