#include "app/window/context_menus.h"

#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "tests/ui/bars/bar_host.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ContextMenusTest : public testing::Test {
 protected:
  /// The menu finds these keys waiting; what it does not take is dropped.
  void press(std::initializer_list<WPARAM> keys) {
    for (const WPARAM key : keys) PostMessageW(host_.main(), WM_KEYDOWN, key, 0);
  }
  /// The commands that were given.
  std::vector<int> commands() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    return host_.takeCommands();
  }

  BarHost host_;
};

constexpr POINT kPoint = {20, 30};

}  // namespace

TEST_F(ContextMenusTest, TheTablesPageDeletes) {
  press({VK_DOWN, VK_RETURN});
  showNamesContextMenu(ownInstance(), host_.main(), 0, kPoint);
  EXPECT_THAT(commands(), ElementsAre(40074));
}

TEST_F(ContextMenusTest, TheQueriesPageDeletesAndEdits) {
  press({VK_DOWN, VK_RETURN});
  showNamesContextMenu(ownInstance(), host_.main(), 3, kPoint);
  EXPECT_THAT(commands(), ElementsAre(40079));
  press({VK_DOWN, VK_DOWN, VK_RETURN});
  showNamesContextMenu(ownInstance(), host_.main(), 3, kPoint);
  EXPECT_THAT(commands(), ElementsAre(40083));
}

TEST_F(ContextMenusTest, TheFormPageEdits) {
  press({VK_DOWN, VK_RETURN});
  showNamesContextMenu(ownInstance(), host_.main(), 1, kPoint);
  EXPECT_THAT(commands(), ElementsAre(40085));
}

TEST_F(ContextMenusTest, TheGridEditsAndDeletes) {
  press({VK_DOWN, VK_RETURN});
  showGridContextMenu(ownInstance(), host_.main(), kPoint);
  EXPECT_THAT(commands(), ElementsAre(40085));
  press({VK_DOWN, VK_DOWN, VK_RETURN});
  showGridContextMenu(ownInstance(), host_.main(), kPoint);
  EXPECT_THAT(commands(), ElementsAre(40001));
}

TEST_F(ContextMenusTest, OtherPagesHaveNoMenu) {
  for (const int page : {-1, 2, 4}) {
    press({VK_DOWN, VK_RETURN});
    showNamesContextMenu(ownInstance(), host_.main(), page, kPoint);
    EXPECT_THAT(commands(), IsEmpty()) << page;
  }
}

TEST_F(ContextMenusTest, LeavingTheMenuGivesNoCommandAndLeavesNothingBehind) {
  press({VK_DOWN, VK_ESCAPE});
  showGridContextMenu(ownInstance(), host_.main(), kPoint);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(LiveResources::count(ResourceKind::menu), 0);
}
