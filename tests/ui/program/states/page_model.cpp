#include "tests/ui/program/states/page_model.h"

#include <algorithm>

// ---- The database

void PageModel::open(ModelDatabase* database) {
  closeOnly();
  leaveMode();
  mode_ = kNone;
  database_ = database;
  tableItemsStale_ = true;
  reposition_ = false;
  setMode(kTables);
  if (!tableItems_.empty()) wantTable(tableItems_[0]);
  page_ = kTables;
  tab_ = kTables;
}

void PageModel::closeOnly() {
  if (!database_) return;
  dropRecords();
  pending_ = false;
  if (mode_ == kList) setMode(kTables);
  database_ = nullptr;
  tableItems_.clear();
  tableSelected_ = -1;
  queryItems_.clear();
  querySelected_ = 0;
  tableName_ = queryName_ = sql_ = L"";
  current_ = 0;
}

void PageModel::close() {
  if (!database_ || !leaveRecord()) return;
  closeOnly();
  page_ = kNone;
  setMode(kNone);
}

// ---- Pages

void PageModel::tapTab(int page) {
  if (page != tab_) showPage(page);
}

void PageModel::showPage(int page) {
  if (page != page_ && leaveRecord()) {
    page_ = page;
    setMode(page);
  }
  tab_ = page_;
}

void PageModel::setMode(int mode) {
  if (mode == mode_) return;
  leaveMode();
  if (database_) {
    opensNow_ = pending_;
    if (opensNow_) openRecords();
    if (opensNow_ && recordsetOpen_ && mode == kList) current_ = 1;
    enterMode(mode);
  }
  mode_ = mode;
  if (mode == kForm) layOutForm();
}

void PageModel::leaveMode() {
  if (mode_ == kForm && hasRecords()) showFormPage(false);
  // What the user sees is what he means.
  isBehind_ = false;
  if (mode_ == kList) {
    // The selected row is the current one.
    if (!hasRecords()) current_ = 1;
    reposition_ = true;
  }
  if (mode_ == kQueries) {
    current_ = 1;
    reposition_ = false;
    if (database_ && queryItems_.empty() && !tableName_.empty()) {
      sql_ = L"Select * from [" + tableName_ + L"]";
      pending_ = true;
    }
  }
  if (mode_ >= kTables && mode_ <= kQueries) shown_[mode_] = false;
}

void PageModel::enterMode(int mode) {
  if (mode == kNone) return;
  shown_[mode] = mode != kList || recordsetOpen_;
  if (mode == kTables && tableItemsStale_) {
    const std::wstring selected =
        tableSelected_ < 0 ? L"" : tableItems_[static_cast<std::size_t>(tableSelected_)];
    tableItems_.clear();
    for (const ModelTable& table : database_->tables) tableItems_.push_back(table.name);
    const auto found = std::find(tableItems_.begin(), tableItems_.end(), selected);
    tableSelected_ = tableItems_.empty()          ? -1
                     : found == tableItems_.end() ? 0
                                                  : static_cast<int>(found - tableItems_.begin());
    tableItemsStale_ = false;
  }
  if (mode == kQueries) {
    queryItems_.clear();
    for (const auto& query : database_->queries()) queryItems_.push_back(query->first);
  }
  if (mode == kForm && recordsetOpen_) {
    const bool builds = !formBuilt_;
    formBuilt_ = true;
    if (recordset_.empty()) return;
    if (builds) buildForm();
    showFormPage(true);
    // What was chosen in the grid means nothing in another recordset.
    const bool repositions = reposition_ && !opensNow_;
    current_ = repositions ? std::max<std::uint32_t>(current_, 1) : 1;
    if (repositions) reposition_ = false;
  }
}

// ---- Choosing

const ModelStatement* PageModel::statement(const std::wstring& sql) const {
  const auto found = std::find_if(statements_.begin(), statements_.end(),
                                  [&](const ModelStatement& each) { return each.sql == sql; });
  return found == statements_.end() ? nullptr : &*found;
}

void PageModel::wantTable(const std::wstring& name) {
  if (name == tableName_) return;
  tableName_ = name;
  queryName_ = L"";
  sql_ = L"Select * from [" + name + L"]";
  pending_ = true;
  firstSliding_ = 1;
}

void PageModel::wantQuery(int index) {
  const auto query = database_->queries()[static_cast<std::size_t>(index)];
  queryName_ = query->first;
  sql_ = query->second;
  tableName_ = L"";
  pending_ = true;
  firstSliding_ = 1;
}

void PageModel::tapName(int index) {
  if (page_ == kTables) {
    tableSelected_ = index;
    wantTable(tableItems_[static_cast<std::size_t>(index)]);
  } else {
    querySelected_ = index;
    wantQuery(index);
  }
}

void PageModel::dropRecords() {
  recordsetOpen_ = false;
  recordset_.clear();
  fields_.clear();
  formBuilt_ = false;
  editorShown_.clear();
  formPage_ = 0;
  isBehind_ = false;
  newPending_ = false;
  typed_.clear();
  isTyped_ = false;
}

void PageModel::openRecords() {
  pending_ = false;
  dropRecords();
  readOnly_ = false;
  int above = -1;
  base_ = database_->find(tableName_);
  if (tableName_.empty()) {
    const ModelStatement* const query = statement(sql_);
    base_ = query && !query->table.empty() ? database_->find(query->table) : nullptr;
    if (query) {
      readOnly_ = query->readOnly;
      above = query->above;
    }
  }
  if (!base_) {
    current_ = 0;
    return;
  }
  recordsetOpen_ = true;
  fields_ = base_->fields;
  for (const auto& record : base_->records) {
    if (above < 0 || (!record->first.empty() && std::stoi(record->first) > above))
      recordset_.push_back(record);
  }
}

// ---- Tables and queries

void PageModel::createTable(const std::wstring& name) {
  database_->tables.push_back({name, {L"a"}, {}});
  base_ = nullptr;
  tableItemsStale_ = false;
  tableItems_.clear();
  for (const ModelTable& table : database_->tables) tableItems_.push_back(table.name);
  tableSelected_ = static_cast<int>(tableItems_.size()) - 1;
  wantTable(name);
}

void PageModel::deleteTable() {
  if (mode_ != kTables || tableItems_.empty()) return;
  dropRecords();
  const std::wstring name = tableItems_[static_cast<std::size_t>(tableSelected_)];
  std::erase_if(database_->tables, [&](const ModelTable& table) { return table.name == name; });
  std::erase(tableItems_, name);
  tableName_ = queryName_ = sql_ = L"";
  pending_ = false;
  tableSelected_ = tableItems_.empty() ? -1 : std::max(tableSelected_ - 1, 0);
  if (!tableItems_.empty()) wantTable(tableItems_[static_cast<std::size_t>(tableSelected_)]);
}

void PageModel::checkStatement() {
  dropRecords();
  pending_ = !sql_.empty();
}

void PageModel::addQuery(const std::wstring& name, const std::wstring& sql) {
  checkStatement();
  if (!database_->find(kModelQueryTable)) {
    database_->tables.push_back({kModelQueryTable, {L"QueryName", L"SQL"}, {}});
    tableItemsStale_ = true;
  }
  database_->find(kModelQueryTable)->records.push_back(std::make_shared<ModelRecord>(ModelRecord{name, sql}));
  queryItems_.clear();
  for (const auto& query : database_->queries()) queryItems_.push_back(query->first);
  querySelected_ =
      static_cast<int>(std::find(queryItems_.begin(), queryItems_.end(), name) - queryItems_.begin());
  wantQuery(querySelected_);
}

void PageModel::deleteQuery() {
  if (mode_ != kQueries || queryItems_.empty()) return;
  const auto query = database_->queries()[static_cast<std::size_t>(querySelected_)];
  std::erase(database_->find(kModelQueryTable)->records, query);
  queryItems_.erase(queryItems_.begin() + querySelected_);
  querySelected_ = std::max(0, std::min(querySelected_, static_cast<int>(queryItems_.size()) - 1));
  if (!queryItems_.empty()) {
    wantQuery(querySelected_);
  } else if (tableName_.empty() && !tableItems_.empty()) {
    wantTable(tableItems_[static_cast<std::size_t>(std::max(tableSelected_, 0))]);
  }
}
