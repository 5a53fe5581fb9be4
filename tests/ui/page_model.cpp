#include "tests/ui/page_model.h"

#include <algorithm>
#include <utility>

#include "resources/command_ids.h"

namespace {

constexpr int kFile[] = {ID_DATABASE_NEW, ID_DATABASE_OPEN, ID_DATABASE_DELETE, ID_DATABASE_CLOSE, ID_EXIT};
constexpr int kEdit[] = {ID_PASSWORD_CHANGE, ID_OPTIONS, ID_DATABASE_INFO, ID_ABOUT};
constexpr int kClipboard[] = {ID_UNDO, ID_CUT, ID_COPY, ID_PASTE};
constexpr int kViews[] = {ID_VIEW_LARGE_ICONS, ID_VIEW_SMALL_ICONS, ID_VIEW_LIST};
constexpr int kTableItems[] = {ID_TABLE_NEW, ID_TABLE_DELETE};
constexpr int kQueryItems[] = {ID_QUERY_NEW, ID_QUERY_EDIT, ID_QUERY_DELETE};
constexpr int kRecordItems[] = {ID_RECORD_NEW,      ID_RECORD_DELETE, ID_RECORD_FIRST, ID_RECORD_LAST,
                                ID_RECORD_PREVIOUS, ID_RECORD_NEXT,   ID_RECORD_NUMBER};
constexpr int kFormItems[] = {ID_PAGE_NEXT, ID_PAGE_PREVIOUS};
constexpr int kListItems[] = {ID_RECORD_EDIT, ID_COLUMN_PREVIOUS, ID_COLUMN_NEXT};

constexpr int kFormButtons[] = {ID_RECORD_NUMBER, ID_RECORD_PREVIOUS, ID_RECORD_NEXT, ID_PAGE_PREVIOUS,
                                ID_PAGE_NEXT};
constexpr int kListButtons[] = {ID_RECORD_PREVIOUS, ID_RECORD_NEXT};

std::wstring joined(const std::vector<std::wstring>& texts) {
  std::wstring result;
  for (const std::wstring& text : texts) result += (result.empty() ? L"" : L", ") + text;
  return result;
}

std::wstring positionText(std::uint32_t current, std::uint32_t count) {
  if (count == 0) return L"No Records";
  const std::wstring text = std::to_wstring(current) + L" / " + std::to_wstring(count);
  const std::size_t pad = 8 - (text.size() - 3);
  return std::wstring(1 + (pad + 1) / 2, L' ') + text;
}

}  // namespace

ModelTable* ModelDatabase::find(const std::wstring& name) {
  const auto found =
      std::find_if(tables.begin(), tables.end(), [&](const ModelTable& table) { return table.name == name; });
  return found == tables.end() ? nullptr : &*found;
}

ModelRecords ModelDatabase::queries() {
  const ModelTable* const table = find(kModelQueryTable);
  if (!table) return {};
  ModelRecords queries = table->records;
  std::stable_sort(queries.begin(), queries.end(),
                   [](const auto& one, const auto& other) { return one->first < other->first; });
  return queries;
}

ModelDatabase ModelDatabase::copy() const {
  ModelDatabase result = *this;
  for (ModelTable& table : result.tables) {
    for (auto& record : table.records) record = std::make_shared<ModelRecord>(*record);
  }
  return result;
}

bool ModelDatabase::holdsTheSameAs(const ModelDatabase& other) const {
  const auto sameRecord = [](const auto& one, const auto& two) {
    return one->first == two->first && one->second == two->second;
  };
  const auto sameTable = [&](const ModelTable& one, const ModelTable& two) {
    return one.name == two.name && std::equal(one.records.begin(), one.records.end(), two.records.begin(),
                                              two.records.end(), sameRecord);
  };
  return path == other.path &&
         std::equal(tables.begin(), tables.end(), other.tables.begin(), other.tables.end(), sameTable);
}

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

// ---- What there has to be

bool PageModel::enabled(int command) const {
  const bool hasTables = database_ && !database_->tables.empty();
  const bool many = recordsetOpen_ && count() > 1;
  switch (command) {
    case ID_DATABASE_CLOSE:
      return database_ != nullptr;
    case ID_UNDO:
    case ID_CUT:
    case ID_COPY:
    case ID_PASTE:
    case ID_RECORD_EDIT:
      return hasTables;
    case ID_FIND:
    case ID_RECORD_DELETE:
      return hasRecords();
    case ID_RECORD_NEW:
      return recordsetOpen_;
    case ID_TABLE_NEW:
    case ID_TABLE_DELETE:
      return hasTables;
    case ID_VIEW_LARGE_ICONS:
    case ID_VIEW_SMALL_ICONS:
    case ID_VIEW_LIST:
      return page_ == kTables ? hasTables : !queryItems_.empty();
    case ID_QUERY_NEW:
    case ID_QUERY_EDIT:
    case ID_QUERY_DELETE:
      return !queryItems_.empty();
    case ID_RECORD_NEXT:
      return many && current_ < count();
    case ID_RECORD_PREVIOUS:
      return (hasRecords() && current_ >= 2) || newPending_;
    case ID_RECORD_FIRST:
      return many && current_ != 1 && !newPending_;
    case ID_RECORD_LAST:
      return many && current_ != count();
    case ID_RECORD_NUMBER:
      return many;
    case ID_COLUMN_PREVIOUS:
    case ID_COLUMN_NEXT:
      return recordsetOpen_;
    default:
      return true;
  }
}

void PageModel::barFacts(Facts& facts) const {
  const auto items = [&](const std::string& popup, auto& commands) {
    for (const int command : commands) {
      // The form's pages are known to the form only.
      if (command == ID_PAGE_NEXT || command == ID_PAGE_PREVIOUS) continue;
      facts["menu " + popup + " " + std::to_string(command)] = enabled(command) ? L"on" : L"grey";
    }
  };
  const auto buttons = [&](auto& commands) {
    for (const int command : commands) {
      if (command == ID_PAGE_NEXT || command == ID_PAGE_PREVIOUS) continue;
      facts["button " + std::to_string(command)] = enabled(command) ? L"on" : L"grey";
    }
  };
  const auto button = [&](int command, bool on) {
    facts["button " + std::to_string(command)] = on ? L"on" : L"grey";
  };
  items("file", kFile);
  if (!database_ || page_ < kTables || page_ > kQueries) return;
  items("edit", kEdit);
  button(ID_DATABASE_INFO, true);
  switch (page_) {
    case kTables:
      items("tables", kTableItems);
      items("tables", kViews);
      button(ID_TABLE_NEW, true);
      button(ID_TABLE_DELETE, tableSelected_ >= 0);
      for (const int view : kViews) button(view, true);
      break;
    case kForm:
      items("edit", kClipboard);
      facts["menu edit " + std::to_string(ID_FIND)] = enabled(ID_FIND) ? L"on" : L"grey";
      items("record", kRecordItems);
      items("record", kFormItems);
      buttons(kFormButtons);
      break;
    case kList:
      items("record", kRecordItems);
      items("record", kListItems);
      buttons(kListButtons);
      button(ID_COLUMN_PREVIOUS, recordsetOpen_ && firstSliding_ > 1);
      button(ID_COLUMN_NEXT, recordsetOpen_ && firstSliding_ < fieldCount() - 2);
      break;
    default:
      items("edit", kClipboard);
      items("queries", kQueryItems);
      items("queries", kViews);
      button(ID_QUERY_NEW, true);
      button(ID_QUERY_EDIT, !queryItems_.empty());
      button(ID_QUERY_DELETE, !queryItems_.empty());
      for (const int view : kViews) button(view, true);
      break;
  }
}

int PageModel::formPageCount(bool panelUp) const {
  const int perPage = panelUp ? 6 : 9;
  return hasEditors_ ? (fieldCount() + perPage - 1) / perPage : 0;
}

Facts PageModel::facts(bool panelUp) const {
  Facts facts;
  barFacts(facts);
  facts["page"] = std::to_wstring(page_);
  facts["tab"] = std::to_wstring(tab_);
  std::vector<std::wstring> shown;
  constexpr const wchar_t* kNames[] = {L"tables", L"form", L"list", L"queries"};
  for (int page = kTables; page <= kQueries; ++page) {
    if (shown_[page]) shown.emplace_back(kNames[page]);
  }
  facts["shown"] = joined(shown);
  facts["database"] = database_ ? database_->path : L"";
  facts["table"] = tableName_;
  facts["query"] = queryName_;
  facts["statement"] = sql_;
  facts["recordset"] = recordsetOpen_ ? L"open" : L"closed";
  if (page_ == kTables || !database_) {
    facts["tables"] = joined(tableItems_);
    facts["selected table"] = std::to_wstring(tableSelected_);
  }
  if (page_ == kQueries || !database_) {
    facts["queries"] = joined(queryItems_);
    facts["selected query"] = std::to_wstring(queryItems_.empty() ? -1 : querySelected_);
  }
  const bool showsRecords = database_ && (page_ == kForm || page_ == kList);
  facts["menu bar buttons"] = showsRecords && recordsetOpen_ ? std::to_wstring(recordset_.empty() ? 1
                                                                               : page_ == kForm   ? 3
                                                                                                  : 2)
                                                             : L"0";
  if (showsRecords) facts["position"] = positionText(current_, count());
  if (showsRecords && page_ == kForm) {
    if (hasRecords()) {
      facts["first editor"] = recordset_[current_ - 1]->first;
      facts["second editor"] = isTyped_             ? typed_
                               : fields_.size() < 2 ? L""
                                                    : recordset_[current_ - 1]->second;
    }
    facts["editors"] = std::to_wstring(hasEditors_ ? fieldCount() : 0);
    facts["form page"] = std::to_wstring(formPage_);
    for (const std::string where : {"menu record ", "button "}) {
      facts[where + std::to_string(ID_PAGE_NEXT)] = formPage_ + 1 < formPageCount(panelUp) ? L"on" : L"grey";
      facts[where + std::to_string(ID_PAGE_PREVIOUS)] = formPage_ != 0 ? L"on" : L"grey";
    }
  }
  if (showsRecords && page_ == kList && recordsetOpen_) {
    facts["rows"] = std::to_wstring(count());
    facts["selected row"] = recordset_.empty() ? L"-1" : std::to_wstring(current_ - 1);
    facts["first cell"] = recordset_.empty() ? L"" : recordset_[current_ - 1]->first;
    std::vector<std::wstring> titles(fields_.begin(), fields_.begin() + 1);
    for (int field = firstSliding_; field < std::min(firstSliding_ + 2, fieldCount()); ++field)
      titles.push_back(fields_[static_cast<std::size_t>(field)]);
    facts["titles"] = joined(titles);
  }
  return facts;
}
