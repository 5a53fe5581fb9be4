#pragma once

#include <string>
#include <vector>

#include "tests/automation/scripts/script_function.h"
#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {

// What a question is told that is going on.
inline constexpr long kLooking = 0;
inline constexpr long kStoring = 1;
inline constexpr long kWriting = 2;

/// Stops what asks, and notes with what.
class Stopper final : public ScriptFunction {
 public:
  explicit Stopper(IAdoceConnection* busy = nullptr)
      : ScriptFunction([this, busy](const DISPPARAMS& arguments) {
          note(arguments);
          if (busy) used.push_back(execute(busy, L"SELECT 1"));
          OwnedVariant stops;
          V_VT(stops.get()) = VT_BOOL;
          V_BOOL(stops.get()) = VARIANT_TRUE;
          return stops;
        }) {}

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes): the tests read them
  std::vector<long> what;
  double total = -1;
  std::vector<HRESULT> used;  // what the busy connection has answered
                              // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  /// The last argument comes first.
  void note(const DISPPARAMS& arguments) {
    ASSERT_EQ(arguments.cArgs, 3u);
    ASSERT_EQ(V_VT(&arguments.rgvarg[2]), VT_I4);
    ASSERT_EQ(V_VT(&arguments.rgvarg[1]), VT_R8);
    ASSERT_EQ(V_VT(&arguments.rgvarg[0]), VT_R8);
    what.push_back(V_I4(&arguments.rgvarg[2]));
    total = V_R8(&arguments.rgvarg[0]);
    EXPECT_GE(V_R8(&arguments.rgvarg[1]), 0);
    // How many records there are to be written nobody knows beforehand.
    if (what.back() != kWriting) {
      EXPECT_LE(V_R8(&arguments.rgvarg[1]), total);
    }
  }
};

/// Records between a database and other files.
class ExchangeTest : public AutomationTest {
 protected:
  void SetUp() override { connection_ = openNewDatabase(); }

  std::vector<std::string> stored(const std::string& sql) const {
    return sqliteColumn(pathOf(L"test.cdb"), sql);
  }

  ComPtr<IAdoceConnection> connection_;
};

}  // namespace automationtest
