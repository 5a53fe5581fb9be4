#include "tests/ui/support/typed_dialog_fixture.h"

#include "base/settings_store.h"
#include "owners/live_resources.h"
#include "tests/ui/support/dialog_reading.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/window_reading.h"

namespace {

int windowCount() {
  int count = 0;
  const auto counter = [](HWND, LPARAM result) -> BOOL {
    ++*reinterpret_cast<int*>(result);
    return TRUE;
  };
  EnumThreadWindows(GetCurrentThreadId(), counter, reinterpret_cast<LPARAM>(&count));
  return count;
}

}  // namespace

void PrintTo(const ControlFacts& facts, std::ostream* out) {
  *out << "{" << facts.id << ", " << testing::PrintToString(facts.className) << ", "
       << testing::PrintToString(facts.text) << "}";
}

void TypedDialogTest::SetUp() {
  RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
}

void TypedDialogTest::TearDown() {
  RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
}

INT_PTR TypedDialogTest::inDialog(const Run& run, const Step& step) {
  const DialogScript script([&](HWND dialog) {
    step(dialog);
    // One that the step did not close, because it failed, must not stay open for ever.
    DialogScript::close(dialog, IDCANCEL);
  });
  const INT_PTR result = run();
  EXPECT_EQ(script.count(), 1);
  return result;
}

void TypedDialogTest::leavesNothingBehind(const Run& run, const Step& step) {
  // What the system itself keeps is there after the first.
  inDialog(run, step);
  const long resources = LiveResources::countOfAll();
  const int windows = windowCount();
  for (int i = 0; i < 100; ++i) inDialog(run, step);
  EXPECT_EQ(LiveResources::countOfAll(), resources);
  EXPECT_EQ(windowCount(), windows);
}

void TypedDialogTest::click(HWND dialog, int id) {
  SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0);
}

void TypedDialogTest::press(HWND dialog, UINT message, WPARAM key) {
  constexpr LPARAM kWithAlt = 0x20000001;
  MSG pressed{GetFocus(), message, key, message == WM_SYSCHAR ? kWithAlt : 1, 0, {}};
  EXPECT_TRUE(IsDialogMessageW(dialog, &pressed));
}

void TypedDialogTest::pressAccessKey(HWND dialog, wchar_t key) {
  press(dialog, WM_SYSCHAR, key);
}

std::wstring TypedDialogTest::textIn(HWND dialog, int id) {
  return textOf(GetDlgItem(dialog, id));
}

std::vector<std::wstring> TypedDialogTest::entries(HWND dialog, int id) {
  const HWND combo = GetDlgItem(dialog, id);
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  std::vector<std::wstring> found;
  for (WPARAM i = 0; static_cast<LRESULT>(i) < count; ++i) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, i, 0)), L'\0');
    SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    found.push_back(text);
  }
  return found;
}

std::wstring TypedDialogTest::selected(HWND dialog, int id) {
  const LRESULT index = SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0);
  return index == CB_ERR ? L"" : entries(dialog, id)[static_cast<std::size_t>(index)];
}

std::vector<ControlFacts> TypedDialogTest::controls(HWND dialog) {
  std::vector<ControlFacts> found;
  for (const HWND child : childrenOf(dialog)) {
    const bool isCombo = classOf(child) == L"ComboBox";
    found.push_back({GetDlgCtrlID(child), classOf(child), isCombo ? L"" : textOf(child)});
  }
  return found;
}

void TypedDialogTest::expectColors(HWND dialog, int labelId, int otherId) {
  const HDC screen = GetDC(nullptr);
  const auto ask = [&](UINT message, HWND window) {
    return SendMessageW(dialog, message, reinterpret_cast<WPARAM>(screen), reinterpret_cast<LPARAM>(window));
  };
  const auto white = reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
  HWND label = GetDlgItem(dialog, labelId);
  EXPECT_EQ(ask(WM_CTLCOLORSTATIC, label), white);
  EXPECT_EQ(GetTextColor(screen), RGB(0, 0, 255));
  EXPECT_EQ(GetBkColor(screen), RGB(255, 255, 255));
  // An edit that can't be changed asks in the same way, and is no label.
  const HWND other = GetDlgItem(dialog, otherId);
  wchar_t name[8] = L"";
  GetClassNameW(other, name, ARRAYSIZE(name));
  const bool isEdit = lstrcmpiW(name, L"Edit") == 0;
  EXPECT_EQ(ask(WM_CTLCOLORSTATIC, other), white);
  EXPECT_EQ(GetTextColor(screen), isEdit ? RGB(0, 0, 0) : RGB(0, 0, 255));
  EXPECT_EQ(ask(WM_CTLCOLORDLG, dialog), white);
  ReleaseDC(nullptr, screen);
}

void TypedDialogTest::expectControlsApart(HWND dialog) {
  RECT client{};
  GetClientRect(dialog, &client);
  std::vector<RECT> places;
  for (const HWND child : childrenOf(dialog)) {
    if (!isShown(child)) continue;
    const RECT place = placeInParent(child);
    RECT common{};
    EXPECT_TRUE(IntersectRect(&common, &place, &client));
    EXPECT_EQ(common, place) << "control " << GetDlgCtrlID(child) << " leaves the dialog";
    for (const RECT& other : places) {
      EXPECT_FALSE(IntersectRect(&common, &place, &other)) << "control " << GetDlgCtrlID(child);
    }
    places.push_back(place);
  }
}
