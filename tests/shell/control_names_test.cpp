// The names that the shell tells assistive technology.
#include <oleacc.h>
#include <string>

#include "gtest/gtest.h"
#include "owners/com_handles.h"
#include "tests/shell/shell_fixture.h"

namespace {

class ControlNamesTest : public ShellTest {
 protected:
  ControlNamesTest() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    list_ = HandheldCreateWindow(0, WC_LISTVIEWW, L"", WS_CHILD, 0, 0, 50, 50, top(), nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
  }
  ~ControlNamesTest() override { CoUninitialize(); }

  HWND list() const { return list_; }

  ComPtr<IAccessible> description() const {
    ComPtr<IAccessible> found;
    AccessibleObjectFromWindow(list_, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                               reinterpret_cast<void**>(found.put()));
    return found;
  }

  static std::wstring nameIn(const ComPtr<IAccessible>& described, LONG child) {
    VARIANT which{};
    which.vt = VT_I4;
    which.lVal = child;
    UniqueBstr name;
    return SUCCEEDED(described->get_accName(which, name.put())) && name ? name.get() : L"";
  }

 private:
  HWND list_ = nullptr;
};

TEST_F(ControlNamesTest, a_name_is_replaced_and_taken_away) {
  EXPECT_TRUE(HandheldNameControl(list(), 0, L"Records"));
  EXPECT_EQ(nameIn(description(), 0), L"Records");
  EXPECT_TRUE(HandheldNameControl(list(), 0, L"Queries"));
  EXPECT_EQ(nameIn(description(), 0), L"Queries");
  EXPECT_TRUE(HandheldNameControl(list(), 0, nullptr));
  EXPECT_EQ(nameIn(description(), 0), L"");
}

TEST_F(ControlNamesTest, what_is_inside_has_names_of_its_own) {
  HandheldNameControl(list(), 0, L"Records");
  HandheldNameControl(list(), 3, L"Third");
  const ComPtr<IAccessible> described = description();
  EXPECT_EQ(nameIn(described, 0), L"Records");
  EXPECT_EQ(nameIn(described, 3), L"Third");
  EXPECT_EQ(nameIn(described, 2), L"");
  long count = 0;
  EXPECT_EQ(described->get_accChildCount(&count), S_OK);
  EXPECT_EQ(count, 3);
}

TEST_F(ControlNamesTest, all_but_the_name_is_the_systems) {
  const ComPtr<IAccessible> systems = description();
  HandheldNameControl(list(), 0, L"Records");
  const ComPtr<IAccessible> named = description();
  VARIANT self{};
  self.vt = VT_I4;
  VARIANT role{};
  VARIANT systemsRole{};
  EXPECT_EQ(named->get_accRole(self, &role), systems->get_accRole(self, &systemsRole));
  EXPECT_EQ(role.lVal, systemsRole.lVal);
}

/// A program that reads aloud may hold what it was given for longer than the window lives.
TEST_F(ControlNamesTest, a_description_outlives_its_window) {
  HandheldNameControl(list(), 0, L"Records");
  const ComPtr<IAccessible> described = description();
  DestroyWindow(list());
  EXPECT_EQ(nameIn(described, 0), L"Records");
}

TEST_F(ControlNamesTest, no_window_has_no_name) {
  EXPECT_FALSE(HandheldNameControl(nullptr, 0, L"Records"));
}

}  // namespace
