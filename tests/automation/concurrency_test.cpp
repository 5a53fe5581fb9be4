#include <windows.h>

#include <objbase.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/automation/automation_test.h"
#include "tests/automation/sqlite_file.h"

namespace automationtest {
namespace {

using Threads = AutomationTest;

// The engine is made for one thread at a time; the objects are called by whom they please.
TEST_F(Threads, MayShareAConnection) {
  const std::wstring path = makeDatabase();
  SqliteFile(path).run(
      "CREATE TABLE T (N INTEGER, Name TEXT);"
      "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 500)"
      "INSERT INTO T SELECT i, 'name ' || i FROM c");
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  std::atomic<long> wrong = 0;
  std::atomic<long> read = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([&] {
      CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      for (int round = 0; round < 3; ++round) {
        const ComPtr<IAdoceRecordset> recordset = recordsOfTable(connection.get(), L"T");
        while (!isEof(recordset.get())) {
          const std::wstring expected = L"name " + textOf(recordset.get(), 0);
          if (textOf(recordset.get(), 1) != expected) ++wrong;
          ++read;
          if (recordset->MoveNext() != S_OK) ++wrong;
        }
        // A failure of one thread describes itself to that thread.
        if (recordset->MoveNext() != objectModelError(3021)) ++wrong;
        ComPtr<IErrorInfo> info;
        if (GetErrorInfo(0, info.receive()) != S_OK) ++wrong;
      }
      CoUninitialize();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(read, 4 * 3 * 500);
}

}  // namespace
}  // namespace automationtest
