#include "platform/pocketshell/window/dialog_template.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"

namespace {

using namespace pocketshell;

std::span<const std::byte> resource(WORD id) {
  const HMODULE module = GetModuleHandleW(nullptr);
  const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
  const HGLOBAL loaded = LoadResource(module, place);
  return {static_cast<const std::byte*>(LockResource(loaded)), SizeofResource(module, place)};
}

std::span<const std::byte> bytesOf(const std::vector<DWORD>& words) {
  return {reinterpret_cast<const std::byte*>(words.data()), words.size() * sizeof(DWORD)};
}

bool contains(std::span<const std::byte> bytes, std::wstring_view text) {
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return std::search(bytes.begin(), bytes.end(), first, first + text.size() * sizeof(wchar_t)) != bytes.end();
}

TEST(DialogTemplateTest, TheOlderKindIsRead) {
  const auto dialog = readDialogTemplate(resource(IDD_OLD));
  ASSERT_TRUE(dialog);
  EXPECT_FALSE(dialog->extended);
  EXPECT_EQ(dialog->x, 10);
  EXPECT_EQ(dialog->y, 20);
  EXPECT_EQ(dialog->width, 140);
  EXPECT_EQ(dialog->height, 80);
  ASSERT_EQ(dialog->items.size(), 4U);
  EXPECT_EQ(dialog->items[2], (DialogItem{IDC_KIND, 41, 25, 90, 60}));
}

TEST(DialogTemplateTest, TheExtendedKindIsRead) {
  const auto dialog = readDialogTemplate(resource(IDD_EXTENDED));
  ASSERT_TRUE(dialog);
  EXPECT_TRUE(dialog->extended);
  EXPECT_EQ(dialog->width, 151);
  ASSERT_EQ(dialog->items.size(), 4U);
  EXPECT_EQ(dialog->items[2], (DialogItem{IDC_LIST, 7, 25, 130, 30}));
}

class RewrittenDialogTest : public testing::TestWithParam<WORD> {};

TEST_P(RewrittenDialogTest, HasTheOtherFontAndTheSameItems) {
  const auto before = readDialogTemplate(resource(GetParam()));
  ASSERT_TRUE(before);
  const std::vector<DWORD> rewritten = dialogWithFont(*before, 17, L"Other Face");
  const auto after = readDialogTemplate(bytesOf(rewritten));
  ASSERT_TRUE(after);
  EXPECT_EQ(after->style, before->style | DS_SETFONT);
  EXPECT_EQ(after->extended, before->extended);
  EXPECT_EQ(after->items, before->items);
  ASSERT_EQ(after->itemBytes.size(), before->itemBytes.size());
  for (std::size_t i = 0; i < after->itemBytes.size(); ++i) {
    EXPECT_TRUE(std::equal(after->itemBytes[i].begin(), after->itemBytes[i].end(),
                           before->itemBytes[i].begin(), before->itemBytes[i].end()));
  }
  WORD points = 0;
  std::memcpy(&points, after->bytes.data() + after->headLength, sizeof(points));
  EXPECT_EQ(points, 17);
  EXPECT_TRUE(contains(after->bytes, std::wstring_view(L"Other Face\0", 11)));
}

TEST_P(RewrittenDialogTest, CutShortIsNoDialog) {
  const auto whole = resource(GetParam());
  // The resource compiler may have padded the end.
  for (std::size_t length = 0; length + sizeof(DWORD) < whole.size(); ++length) {
    EXPECT_FALSE(readDialogTemplate(whole.first(length))) << length;
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, RewrittenDialogTest, testing::Values(IDD_OLD, IDD_EXTENDED, IDD_PLAIN));

}  // namespace
