#include "owners/handles.h"

#include <utility>
#include <vector>

#include "gtest/gtest.h"
#include "owners/control_handles.h"

namespace {

/// A resource that writes down what was closed.
std::vector<int> closed;

struct NumberTraits {
  using Value = int;
  static constexpr ResourceKind kKind = ResourceKind::kernelObject;
  static int invalid() noexcept { return -1; }
  static void close(int value) noexcept { closed.push_back(value); }
};
using UniqueNumber = UniqueResource<NumberTraits>;

class UniqueResourceTest : public testing::Test {
 protected:
  void SetUp() override {
    closed.clear();
    before_ = LiveResources::count(ResourceKind::kernelObject);
  }
  void TearDown() override { EXPECT_EQ(live(), 0); }

  long live() const { return LiveResources::count(ResourceKind::kernelObject) - before_; }

 private:
  long before_ = 0;
};

TEST_F(UniqueResourceTest, HoldsNothingAtFirst) {
  const UniqueNumber number;
  EXPECT_FALSE(number);
  EXPECT_EQ(number.get(), -1);
  EXPECT_EQ(live(), 0);
}

TEST_F(UniqueResourceTest, ClosesAtTheEnd) {
  {
    const UniqueNumber number(0);
    EXPECT_TRUE(number) << "zero is a value like any other here";
    EXPECT_EQ(live(), 1);
  }
  EXPECT_EQ(closed, std::vector<int>{0});
}

TEST_F(UniqueResourceTest, TheInvalidValueIsNeitherClosedNorCounted) {
  {
    const UniqueNumber number(-1);
    EXPECT_FALSE(number);
    EXPECT_EQ(live(), 0);
  }
  EXPECT_TRUE(closed.empty());
}

TEST_F(UniqueResourceTest, ResetClosesTheOldOne) {
  UniqueNumber number(1);
  number.reset(2);
  EXPECT_EQ(closed, std::vector<int>{1});
  EXPECT_EQ(number.get(), 2);
  EXPECT_EQ(live(), 1);
  number.reset();
  EXPECT_EQ(closed, (std::vector<int>{1, 2}));
  EXPECT_FALSE(number);
  EXPECT_EQ(live(), 0);
}

TEST_F(UniqueResourceTest, ReleaseGivesItAway) {
  UniqueNumber number(1);
  EXPECT_EQ(number.release(), 1);
  EXPECT_FALSE(number);
  EXPECT_EQ(live(), 0);
  number.reset();
  EXPECT_TRUE(closed.empty());
}

TEST_F(UniqueResourceTest, MovingHandsItOver) {
  UniqueNumber first(1);
  UniqueNumber second(std::move(first));
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): that is the promise
  EXPECT_EQ(second.get(), 1);
  EXPECT_EQ(live(), 1);
  UniqueNumber third(3);
  third = std::move(second);
  EXPECT_EQ(third.get(), 1);
  EXPECT_EQ(closed, std::vector<int>{3});
  EXPECT_EQ(live(), 1);
}

TEST_F(UniqueResourceTest, MovingToItselfKeepsIt) {
  UniqueNumber number(1);
  UniqueNumber& alias = number;
  number = std::move(alias);
  EXPECT_EQ(number.get(), 1);
  EXPECT_TRUE(closed.empty());
}

TEST_F(UniqueResourceTest, PutClosesTheOldOneAndOwnsTheNew) {
  {
    UniqueNumber number(1);
    *number.put() = 2;
    EXPECT_EQ(closed, std::vector<int>{1});
    EXPECT_EQ(number.get(), 2);
    EXPECT_EQ(live(), 1);
  }
  EXPECT_EQ(closed, (std::vector<int>{1, 2}));
}

TEST_F(UniqueResourceTest, PutWithoutANewOneIsForgottenAtTheEnd) {
  {
    UniqueNumber number;
    EXPECT_EQ(*number.put(), -1);
    EXPECT_FALSE(number);
  }
  EXPECT_TRUE(closed.empty());
  EXPECT_EQ(live(), 0);
}

TEST_F(UniqueResourceTest, PutAfterPutClosesTheFirst) {
  UniqueNumber number;
  *number.put() = 1;
  *number.put() = 2;
  EXPECT_EQ(closed, std::vector<int>{1});
  EXPECT_EQ(live(), 1);
}

/// True while the system knows the handle.
bool isOpen(HANDLE handle) {
  DWORD flags = 0;
  return GetHandleInformation(handle, &flags) != FALSE;
}

TEST(HandlesTest, AKernelObjectIsClosed) {
  HANDLE raw = nullptr;
  {
    const UniqueKernelObject event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    raw = event.get();
    ASSERT_TRUE(isOpen(raw));
  }
  EXPECT_FALSE(isOpen(raw));
}

TEST(HandlesTest, AFileIsClosed) {
  wchar_t path[MAX_PATH];
  ASSERT_NE(GetModuleFileNameW(nullptr, path, MAX_PATH), 0u);
  HANDLE raw = nullptr;
  {
    const UniqueFile file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    raw = file.get();
    ASSERT_TRUE(file);
    EXPECT_EQ(LiveResources::count(ResourceKind::file), 1);
  }
  EXPECT_FALSE(isOpen(raw));
  EXPECT_EQ(LiveResources::count(ResourceKind::file), 0);
}

TEST(HandlesTest, AFileThatCantBeOpenedIsNotHeld) {
  const UniqueFile file(
      CreateFileW(L"C:\\no folder\\no file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_FALSE(file);
  EXPECT_EQ(LiveResources::count(ResourceKind::file), 0);
}

TEST(HandlesTest, AMutexIsClosedAndItsNameIsFreeAgain) {
  const wchar_t* const name = L"Quivane tests mutex";
  {
    const UniqueMutex mutex(CreateMutexW(nullptr, FALSE, name));
    ASSERT_TRUE(mutex);
    EXPECT_TRUE(UniqueMutex(OpenMutexW(SYNCHRONIZE, FALSE, name)));
  }
  EXPECT_FALSE(UniqueMutex(OpenMutexW(SYNCHRONIZE, FALSE, name)));
}

TEST(HandlesTest, ARegistryKeyIsClosed) {
  HKEY raw = nullptr;
  {
    UniqueRegistryKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, key.put()), ERROR_SUCCESS);
    raw = key.get();
    EXPECT_EQ(LiveResources::count(ResourceKind::registryKey), 1);
  }
  EXPECT_EQ(LiveResources::count(ResourceKind::registryKey), 0);
  EXPECT_NE(RegQueryInfoKeyW(raw, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr),
            ERROR_SUCCESS);
}

TEST(HandlesTest, AModuleIsUnloaded) {
  const wchar_t* const name = L"winmm.dll";
  ASSERT_EQ(GetModuleHandleW(name), nullptr) << "the test needs a library that nothing else loads";
  {
    const UniqueModule module(LoadLibraryW(name));
    ASSERT_TRUE(module);
    EXPECT_NE(GetModuleHandleW(name), nullptr);
  }
  EXPECT_EQ(GetModuleHandleW(name), nullptr);
}

TEST(HandlesTest, GdiObjectsAreDeleted) {
  HFONT font = nullptr;
  HBRUSH brush = nullptr;
  HBITMAP bitmap = nullptr;
  {
    const UniqueFont ownedFont(
        CreateFontW(-11, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma"));
    const UniqueBrush ownedBrush(CreateSolidBrush(RGB(1, 2, 3)));
    const UniqueBitmap ownedBitmap(CreateBitmap(4, 4, 1, 1, nullptr));
    font = ownedFont.get();
    brush = ownedBrush.get();
    bitmap = ownedBitmap.get();
    EXPECT_EQ(GetObjectType(font), static_cast<DWORD>(OBJ_FONT));
    EXPECT_EQ(GetObjectType(brush), static_cast<DWORD>(OBJ_BRUSH));
    EXPECT_EQ(GetObjectType(bitmap), static_cast<DWORD>(OBJ_BITMAP));
    EXPECT_EQ(LiveResources::countOfAll(), 3);
  }
  EXPECT_EQ(GetObjectType(font), 0u);
  EXPECT_EQ(GetObjectType(brush), 0u);
  EXPECT_EQ(GetObjectType(bitmap), 0u);
  EXPECT_EQ(LiveResources::countOfAll(), 0);
}

TEST(HandlesTest, AnIconIsDestroyed) {
  const BYTE mask[32 * 4] = {};
  HICON raw = nullptr;
  ICONINFO info = {};
  {
    const UniqueIcon icon(CreateIcon(nullptr, 32, 32, 1, 1, mask, mask));
    raw = icon.get();
    ASSERT_TRUE(GetIconInfo(raw, &info));
    UniqueBitmap(info.hbmMask).reset();
    if (info.hbmColor) UniqueBitmap(info.hbmColor).reset();
  }
  EXPECT_FALSE(GetIconInfo(raw, &info));
}

TEST(HandlesTest, AMemoryDcIsDeleted) {
  HDC raw = nullptr;
  {
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    raw = dc.get();
    EXPECT_EQ(GetObjectType(raw), static_cast<DWORD>(OBJ_MEMDC));
  }
  EXPECT_EQ(GetObjectType(raw), 0u);
}

TEST(HandlesTest, AnImageListIsDestroyed) {
  HIMAGELIST raw = nullptr;
  {
    const UniqueImageList images(ImageList_Create(16, 16, ILC_COLOR, 1, 1));
    raw = images.get();
    int width = 0;
    int height = 0;
    ASSERT_TRUE(ImageList_GetIconSize(raw, &width, &height));
    EXPECT_EQ(LiveResources::count(ResourceKind::imageList), 1);
  }
  EXPECT_EQ(LiveResources::count(ResourceKind::imageList), 0);
}

TEST(HandlesTest, AWindowIsDestroyedAndItsDcGoesBackFirst) {
  HWND raw = nullptr;
  {
    const UniqueWindow window(
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
    raw = window.get();
    ASSERT_TRUE(IsWindow(raw));
    UniqueWindowDc dc(raw);
    EXPECT_TRUE(dc);
    EXPECT_EQ(WindowFromDC(dc.dc()), raw);
    EXPECT_EQ(LiveResources::count(ResourceKind::deviceContext), 1);
    UniqueWindowDc moved(std::move(dc));
    EXPECT_FALSE(dc);  // NOLINT(bugprone-use-after-move): that is the promise
    EXPECT_TRUE(moved);
    EXPECT_EQ(LiveResources::count(ResourceKind::deviceContext), 1);
  }
  EXPECT_FALSE(IsWindow(raw));
  EXPECT_EQ(LiveResources::countOfAll(), 0);
}

TEST(HandlesTest, ADcGoesBackToItsWindow) {
  const UniqueWindow window(
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
  HDC raw = nullptr;
  {
    const UniqueWindowDc dc(window.get());
    raw = dc.dc();
    ASSERT_EQ(WindowFromDC(raw), window.get());
  }
  EXPECT_EQ(WindowFromDC(raw), nullptr);
}

TEST(HandlesTest, TheDcOfAWindowThatIsGoneIsNotHeld) {
  HWND gone = nullptr;
  {
    const UniqueWindow window(
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
    gone = window.get();
  }
  const UniqueWindowDc dc(gone);
  EXPECT_FALSE(dc);
  EXPECT_EQ(dc.dc(), nullptr);
  EXPECT_EQ(LiveResources::count(ResourceKind::deviceContext), 0);
}

}  // namespace
