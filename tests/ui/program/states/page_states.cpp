#include "tests/ui/program/states/page_states.h"

#include "resources/command_ids.h"
#include "tests/ui/program/states/page_actions.h"
#include "tests/ui/program/states/page_window.h"

namespace {

template <int kTable, int kPage>
void tableOn(Pages& pages) {
  pages.useTable(kTable);
  pages.showPage(kPage);
}

template <int kQuery, int kPage>
void queryOn(Pages& pages) {
  pages.useQuery(kQuery);
  pages.showPage(kPage);
}

template <int kPage>
void closedOn(Pages& pages) {
  pagewindow::command(ID_DATABASE_CLOSE);
  pages.model.close();
  if (kPage != kNone) pages.showPage(kPage);
}

template <int kPage>
void panelOn(Pages& pages) {
  pages.useTable(Pages::kWideTable);
  pages.showPage(kPage);
  if (!pages.model.isPanelUp()) pages.pressPanelButton();
}

void newOnForm(Pages& pages) {
  tableOn<Pages::kOneTable, kForm>(pages);
  pages.newRecord();
}

void newOnEmptyForm(Pages& pages) {
  tableOn<Pages::kEmptyTable, kForm>(pages);
  pages.newRecord();
}

/// The store refuses it: its first field may not be empty.
template <int kTable>
void refusedOnForm(Pages& pages) {
  tableOn<kTable, kForm>(pages);
  pages.newRecord();
}

template <const wchar_t* kText>
void matchOnForm(Pages& pages) {
  tableOn<Pages::kWideTable, kForm>(pages);
  pages.find(kText);
}

void changedOnForm(Pages& pages) {
  tableOn<Pages::kWideTable, kForm>(pages);
  pages.type();
}

constexpr wchar_t kSecond[] = L"r2";
constexpr wchar_t kLast[] = L"r6";

constexpr State kStates[] = {
    {"no database", Pages::kPlain, closedOn<kNone>},
    {"no database, Tables", Pages::kPlain, closedOn<kTables>},
    {"no database, Form", Pages::kPlain, closedOn<kForm>},
    {"no database, List", Pages::kPlain, closedOn<kList>},
    {"no database, Queries", Pages::kPlain, closedOn<kQueries>},
    {"empty database, Tables", Pages::kBare, tab<kTables>},
    {"empty database, Form", Pages::kBare, tab<kForm>},
    {"empty database, List", Pages::kBare, tab<kList>},
    {"empty database, Queries", Pages::kBare, tab<kQueries>},
    {"no queries, Tables", Pages::kPlain, tab<kTables>},
    {"no queries, Form", Pages::kPlain, tab<kForm>},
    {"no queries, List", Pages::kPlain, tab<kList>},
    {"no queries, Queries", Pages::kPlain, tab<kQueries>},
    {"empty table, Tables", Pages::kMany, tableOn<Pages::kEmptyTable, kTables>},
    {"empty table, Form", Pages::kMany, tableOn<Pages::kEmptyTable, kForm>},
    {"empty table, List", Pages::kMany, tableOn<Pages::kEmptyTable, kList>},
    {"empty table, Queries", Pages::kMany, tableOn<Pages::kEmptyTable, kQueries>},
    {"one record, Form", Pages::kMany, tableOn<Pages::kOneTable, kForm>},
    {"one record, List", Pages::kMany, tableOn<Pages::kOneTable, kList>},
    {"many records, Tables", Pages::kMany, tableOn<Pages::kWideTable, kTables>},
    {"many records, Form", Pages::kMany, tableOn<Pages::kWideTable, kForm>},
    {"many records, List", Pages::kMany, tableOn<Pages::kWideTable, kList>},
    {"many records, Queries", Pages::kMany, tableOn<Pages::kWideTable, kQueries>},
    {"a query, Tables", Pages::kMany, queryOn<0, kTables>},
    {"a query, Form", Pages::kMany, queryOn<0, kForm>},
    {"a query, List", Pages::kMany, queryOn<0, kList>},
    {"a query, Queries", Pages::kMany, queryOn<0, kQueries>},
    {"read-only records, Form", Pages::kMany, queryOn<1, kForm>},
    {"read-only records, List", Pages::kMany, queryOn<1, kList>},
    {"a query that does not run, Tables", Pages::kMany, queryOn<2, kTables>},
    {"a query that does not run, Form", Pages::kMany, queryOn<2, kForm>},
    {"a query that does not run, List", Pages::kMany, queryOn<2, kList>},
    {"a new record, Form", Pages::kMany, newOnForm},
    {"a first record, Form", Pages::kMany, newOnEmptyForm},
    {"a refused record, Form", Pages::kMany, refusedOnForm<Pages::kStrictTable>},
    {"a refused first record, Form", Pages::kMany, refusedOnForm<Pages::kEmptyStrictTable>},
    {"a match, Form", Pages::kMany, matchOnForm<kSecond>},
    {"a match in the last record, Form", Pages::kMany, matchOnForm<kLast>},
    {"a changed editor, Form", Pages::kMany, changedOnForm},
    {"the panel up, Tables", Pages::kMany, panelOn<kTables>},
    {"the panel up, Form", Pages::kMany, panelOn<kForm>},
    {"the panel up, List", Pages::kMany, panelOn<kList>},
    {"the panel up, Queries", Pages::kMany, panelOn<kQueries>},
};

}  // namespace

std::span<const State> pageStates() {
  return kStates;
}
