#include "tests/ui/page_model.h"

#include <algorithm>
#include <utility>

#include "resources/command_ids.h"

// ---- The database

void PageModel::open(ModelDatabase* database) {
  closeOnly();
  if (!database) return;
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
  if (mode_ == kForm && hasRecords()) commit();
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
  if (!database_) return;
  closeOnly();
  page_ = kNone;
  setMode(kNone);
}

// ---- Pages

void PageModel::tapTab(int page) {
  if (page != tab_) showPage(page);
}

void PageModel::showPage(int page) {
  if (page != page_) {
    page_ = page;
    setMode(page);
  }
  tab_ = page;
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
}

void PageModel::leaveMode() {
  if (mode_ == kForm && hasRecords()) commit();
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
    if (!formBuilt_) formShows(0);
    formBuilt_ = true;
    if (recordset_.empty()) return;
    hasEditors_ = true;
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

int PageModel::nameCount() const {
  if (page_ == kTables) return static_cast<int>(tableItems_.size());
  return page_ == kQueries ? static_cast<int>(queryItems_.size()) : 0;
}

int PageModel::selectedName() const {
  return page_ == kTables ? tableSelected_ : querySelected_;
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
  hasEditors_ = false;
  formShows(0);
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

// ---- Records

bool PageModel::canChangeRecords() const {
  return recordsetOpen_ && !readOnly_ && base_->name != kModelQueryTable;
}

bool PageModel::canType() const {
  return mode_ == kForm && hasRecords() && canChangeRecords() && fields_.size() > 1;
}

void PageModel::type(wchar_t character) {
  if (!isTyped_) typed_ = recordset_[current_ - 1]->second;
  isTyped_ = true;
  typed_ += character;
}

void PageModel::commit() {
  if (newPending_) base_->records.push_back(recordset_.back());
  if (isTyped_) recordset_[current_ - 1]->second = typed_;
  newPending_ = false;
  isTyped_ = false;
}

void PageModel::moveTo(std::uint32_t position) {
  if (!recordsetOpen_) return;
  if (mode_ == kForm && hasRecords()) commit();
  if (mode_ == kForm || mode_ == kList) current_ = position;
}

void PageModel::moveFirst() {
  moveTo(1);
}

void PageModel::moveLast() {
  moveTo(count());
}

void PageModel::moveNext() {
  if (current_ < count()) moveTo(current_ + 1);
}

void PageModel::movePrevious() {
  if (current_ > 1) {
    moveTo(current_ - 1);
  } else if (mode_ == kForm) {
    moveTo(1);
  }
}

void PageModel::tapRow(int row) {
  current_ = static_cast<std::uint32_t>(row) + 1;
}

void PageModel::arrowKey(int step) {
  if (step < 0 && current_ > 1) --current_;
  if (step > 0 && current_ < count()) ++current_;
}

void PageModel::newRecord() {
  if (mode_ != kForm || !recordsetOpen_ || readOnly_) return;
  if (recordset_.empty()) {
    hasEditors_ = true;
    formPage_ = 0;
  } else {
    commit();
  }
  recordset_.push_back(std::make_shared<ModelRecord>());
  current_ = count();
  newPending_ = true;
  formPageKnown_ = false;
}

void PageModel::openFind() {
  if (mode_ == kForm && hasRecords()) commit();
}

void PageModel::deleteRecord() {
  if ((mode_ != kForm && mode_ != kList) || !hasRecords() || readOnly_) return;
  isTyped_ = false;
  if (newPending_) {
    recordset_.pop_back();
    newPending_ = false;
  } else {
    const auto record = recordset_[current_ - 1];
    std::erase(base_->records, record);
    std::erase(recordset_, record);
    --current_;
  }
  if (mode_ == kForm) {
    current_ = current_ > 1 ? current_ - 1 : 1;
  } else if (current_ == 0 && !recordset_.empty()) {
    current_ = 1;
  }
}

void PageModel::turnFormPage(int step, bool panelUp) {
  if (mode_ != kForm || formPage_ + step < 0 || formPage_ + step >= formPageCount(panelUp)) return;
  formPage_ += step;
}

void PageModel::slideColumns(int step) {
  if (mode_ != kList || !recordsetOpen_) return;
  const int next = firstSliding_ + step;
  if (next >= 1 && next <= std::max(1, fieldCount() - 2)) firstSliding_ = next;
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
