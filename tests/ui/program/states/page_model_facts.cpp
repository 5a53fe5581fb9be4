// What the model says that there has to be.
#include <algorithm>
#include <string>
#include <vector>

#include "resources/command_ids.h"
#include "tests/ui/program/states/page_model.h"

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

bool PageModel::canChangeRecords() const {
  return recordsetOpen_ && !readOnly_ && base_->name != kModelQueryTable;
}

bool PageModel::canType() const {
  return mode_ == kForm && hasRecords() && canChangeRecords() && fields_.size() > 1;
}

bool PageModel::isRefused() const {
  return mode_ == kForm && newPending_ && base_->isStrict;
}

int PageModel::nameCount() const {
  if (page_ == kTables) return static_cast<int>(tableItems_.size());
  return page_ == kQueries ? static_cast<int>(queryItems_.size()) : 0;
}

int PageModel::selectedName() const {
  return page_ == kTables ? tableSelected_ : querySelected_;
}

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
      return many && cursor() < count();
    case ID_RECORD_PREVIOUS:
      return (hasRecords() && cursor() >= 2) || newPending_;
    case ID_RECORD_FIRST:
      return many && cursor() != 1 && !newPending_;
    case ID_RECORD_LAST:
      return many && cursor() != count();
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

int PageModel::formPageCount() const {
  return (static_cast<int>(editorShown_.size()) + fieldsPerPage_ - 1) / fieldsPerPage_;
}

void PageModel::formFacts(Facts& facts) const {
  if (hasRecords()) {
    const ModelRecord& record = *recordset_[current_ - 1];
    facts["first editor"] = record.first;
    facts["second editor"] = isTyped_ ? typed_ : fields_.size() < 2 ? L"" : record.second;
  }
  facts["editors"] = std::to_wstring(editorShown_.size());
  facts["visible editors"] = std::to_wstring(std::count(editorShown_.begin(), editorShown_.end(), true));
  facts["form page"] = std::to_wstring(formPage_);
  for (const std::string where : {"menu record ", "button "}) {
    facts[where + std::to_string(ID_PAGE_NEXT)] = formPage_ + 1 < formPageCount() ? L"on" : L"grey";
    facts[where + std::to_string(ID_PAGE_PREVIOUS)] = formPage_ != 0 ? L"on" : L"grey";
  }
}

void PageModel::gridFacts(Facts& facts) const {
  facts["rows"] = std::to_wstring(count());
  facts["selected row"] = recordset_.empty() ? L"-1" : std::to_wstring(current_ - 1);
  facts["first cell"] = recordset_.empty() ? L"" : recordset_[current_ - 1]->first;
  std::vector<std::wstring> titles(fields_.begin(), fields_.begin() + 1);
  for (int field = firstSliding_; field < std::min(firstSliding_ + 2, fieldCount()); ++field)
    titles.push_back(fields_[static_cast<std::size_t>(field)]);
  facts["titles"] = joined(titles);
}

Facts PageModel::facts() const {
  Facts facts;
  barFacts(facts);
  facts["panel"] = panelUp_ ? L"up" : L"down";
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
  if (showsRecords && page_ == kForm) formFacts(facts);
  if (showsRecords && page_ == kList && recordsetOpen_) gridFacts(facts);
  return facts;
}
