// Another program asks for the names of the controls, as assistive technology does, and the program is killed
// meanwhile.
#include <windows.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <oleacc.h>
#include <random>
#include <thread>
#include <vector>

#include "owners/com_handles.h"
#include "tests/ui/support/ui_test.h"

namespace {

constexpr int kKills = 6;
constexpr std::chrono::seconds kAskersPatience{3};

class AskedNamesTest : public UiTest {
 protected:
  static BOOL CALLBACK collect(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
  }
  /// How many of the window's controls have one.
  static int askAll(HWND main) {
    std::vector<HWND> controls;
    EnumChildWindows(main, collect, reinterpret_cast<LPARAM>(&controls));
    int named = 0;
    for (const HWND control : controls) {
      ComPtr<IAccessible> description;
      if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                            reinterpret_cast<void**>(description.put())))) {
        continue;
      }
      VARIANT self{};
      self.vt = VT_I4;
      UniqueBstr name;
      if (SUCCEEDED(description->get_accName(self, name.put())) && name) ++named;
    }
    return named;
  }
};

TEST_F(AskedNamesTest, AfterAKillMeanwhileTheNextOneAnswers) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Text, b Datetime, c Bit)",
                               L"INSERT INTO T VALUES ('one', '2001-03-09', 1)"});
  std::mt19937 random(22);
  for (int number = 0; number < kKills; ++number) {
    auto opened = std::make_unique<OpenedDatabase>(file("a.cdb"));
    ASSERT_NE(opened->tables(), nullptr);
    ASSERT_TRUE(remote::switchToPage(opened->main(), OpenedDatabase::kFormPage));
    const HWND main = opened->main();
    auto asked = std::make_shared<std::atomic<int>>(0);
    auto isDone = std::make_shared<std::atomic<bool>>(false);
    std::thread asker([=] {
      CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      while (IsWindow(main)) *asked += askAll(main);
      CoUninitialize();
      *isDone = true;
    });
    const bool isAnswered = remote::waitUntil([&] { return *asked > 0; });
    // The instant is what is tried here.
    WaitForSingleObject(opened->program().processHandle(),
                        std::uniform_int_distribution<DWORD>(0, 60)(random));
    opened.reset();
    // To ask, oleacc takes over a handle of the process that it asks. Wine's wait for that
    // (NtDuplicateObject) never ends if the process is ended in its midst, about once in 400 kills, whatever
    // the process is. Such an asker uses nothing but what it holds itself, and ends with this program.
    if (remote::waitUntil([&] { return isDone->load(); }, kAskersPatience)) {
      asker.join();
    } else {
      asker.detach();
    }
    ASSERT_TRUE(isAnswered) << "after " << number << " kills";
  }
}

}  // namespace
