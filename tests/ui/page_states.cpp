#include "tests/ui/page_states.h"

#include "tests/ui/page_actions.h"

namespace {

constexpr int kWideTable = 0;
constexpr int kOneTable = 1;
constexpr int kEmptyTable = 2;

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
  pages.useTable(kWideTable);
  pages.showPage(kPage);
  if (!pagewindow::isPanelUp()) panel(pages);
}

void newOnForm(Pages& pages) {
  tableOn<kOneTable, kForm>(pages);
  pages.newRecord();
}

void newOnEmptyForm(Pages& pages) {
  tableOn<kEmptyTable, kForm>(pages);
  pages.newRecord();
}

void changedOnForm(Pages& pages) {
  tableOn<kWideTable, kForm>(pages);
  pages.type();
}

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
    {"empty table, Tables", Pages::kMany, tableOn<kEmptyTable, kTables>},
    {"empty table, Form", Pages::kMany, tableOn<kEmptyTable, kForm>},
    {"empty table, List", Pages::kMany, tableOn<kEmptyTable, kList>},
    {"empty table, Queries", Pages::kMany, tableOn<kEmptyTable, kQueries>},
    {"one record, Form", Pages::kMany, tableOn<kOneTable, kForm>},
    {"one record, List", Pages::kMany, tableOn<kOneTable, kList>},
    {"many records, Tables", Pages::kMany, tableOn<kWideTable, kTables>},
    {"many records, Form", Pages::kMany, tableOn<kWideTable, kForm>},
    {"many records, List", Pages::kMany, tableOn<kWideTable, kList>},
    {"many records, Queries", Pages::kMany, tableOn<kWideTable, kQueries>},
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
