#include <array>
#include <cstddef>

#include "app/bars/page_bars.h"
#include "resources/command_ids.h"
#include "resources/resource_ids.h"

namespace {

constexpr UINT kFirstBand = 2002;
constexpr UINT kSecondBand = 2003;
constexpr WORD kFirstToolbar = 2001;
constexpr WORD kSecondToolbar = 2000;

constexpr std::array kFormButtons = {
    BarButton{ID_DATABASE_INFO, L"Information"},       BarButton{ID_RECORD_NUMBER, L"Goto record"},
    BarButton{ID_RECORD_PREVIOUS, L"Previous record"}, BarButton{ID_RECORD_NEXT, L"Next record"},
    BarButton{ID_PAGE_PREVIOUS, L"Previous page"},     BarButton{ID_PAGE_NEXT, L"Next page"},
};

constexpr std::array kListButtons = {
    BarButton{ID_DATABASE_INFO, L"Information"},
    BarButton{ID_RECORD_PREVIOUS, L"Select Previous record"},
    BarButton{ID_RECORD_NEXT, L"Select Next record"},
    BarButton{ID_COLUMN_PREVIOUS, L"Previous column"},
    BarButton{ID_COLUMN_NEXT, L"Next column"},
};

constexpr std::array kTableButtons = {
    BarButton{ID_TABLE_NEW, L"New Table"},
    BarButton{ID_TABLE_DELETE, L"Delete Selected Table"},
};

constexpr std::array kQueryButtons = {
    BarButton{ID_QUERY_NEW, L"New Query"},
    BarButton{ID_QUERY_EDIT, L"Edit Query"},
    BarButton{ID_QUERY_DELETE, L"Delete Selected Query"},
};

/// Both pages of names have these.
constexpr std::array kNamesButtons = {
    BarButton{ID_DATABASE_INFO, L"DB Information"},
    BarButton{ID_VIEW_LARGE_ICONS, L"Show in large icons style"},
    BarButton{ID_VIEW_SMALL_ICONS, L"Show in small icons style"},
    BarButton{ID_VIEW_LIST, L"Show in list style"},
};

constexpr BandLayout kPositionBand = {kFirstBand, PageBars::kPositionId, 0, {}};
constexpr BandLayout kNamesBand = {kSecondBand, kSecondToolbar, IDB_NAMES_BAR, kNamesButtons};

using PageRow = std::array<BandLayout, 2>;

/// By the number of the page.
constexpr std::array<PageRow, 4> kPages = {
    PageRow{BandLayout{kFirstBand, kFirstToolbar, IDB_TABLES_BAR, kTableButtons}, kNamesBand},
    PageRow{kPositionBand, BandLayout{kSecondBand, kSecondToolbar, IDB_FORM_BAR, kFormButtons}},
    PageRow{kPositionBand, BandLayout{kSecondBand, kSecondToolbar, IDB_LIST_BAR, kListButtons}},
    PageRow{BandLayout{kFirstBand, kFirstToolbar, IDB_QUERIES_BAR, kQueryButtons}, kNamesBand},
};

}  // namespace

std::span<const BandLayout> pageBands(int page) {
  if (page < 0 || static_cast<std::size_t>(page) >= kPages.size()) return {};
  return kPages[static_cast<std::size_t>(page)];
}
