#include <windows.h>

#include <objbase.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

class Threads : public AutomationTest {
 protected:
  /// Reads the table on a thread of its own and counts what is not as expected.
  void readTable(IAdoceConnection* connection) {
    const ComPtr<IAdoceRecordset> recordset = recordsOfTable(connection, L"T");
    while (!isEof(recordset.get())) {
      const std::wstring expected = L"name " + textOf(recordset.get(), 0);
      if (textOf(recordset.get(), 1) != expected) ++wrong_;
      ++read_;
      if (recordset->MoveNext() != S_OK) ++wrong_;
    }
    // A failure of one thread describes itself to that thread.
    if (recordset->MoveNext() != objectModelError(3021)) ++wrong_;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) ++wrong_;
  }

  std::atomic<long> wrong_ = 0;
  std::atomic<long> read_ = 0;
};

// The engine is made for one thread at a time; the objects are called by whom they please.
TEST_F(Threads, MayShareAConnection) {
  const std::wstring path = makeDatabase();
  SqliteFile(path).run(
      "CREATE TABLE T (N INTEGER, Name TEXT);"
      "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 500)"
      "INSERT INTO T SELECT i, 'name ' || i FROM c");
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  std::array<std::thread, 4> threads;
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      for (int round = 0; round < 3; ++round) readTable(connection.get());
      CoUninitialize();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong_, 0);
  EXPECT_EQ(read_, 4 * 3 * 500);
}

}  // namespace
}  // namespace automationtest
