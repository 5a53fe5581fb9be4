// The model's records, its form and its panel.
#include <algorithm>
#include <memory>

#include "tests/ui/program/states/page_model.h"

// ---- Storing

bool PageModel::leaveRecord() {
  if (mode_ != kForm || !hasRecords()) return true;
  if (!isRefused()) {
    commit();
    return true;
  }
  if (discards_) discard();
  return discards_;
}

void PageModel::commit() {
  if (newPending_) base_->records.push_back(recordset_.back());
  if (isTyped_) recordset_[current_ - 1]->second = typed_;
  // Storing goes back to the record that is shown.
  if (isTyped_) isBehind_ = false;
  newPending_ = false;
  isTyped_ = false;
}

void PageModel::discard() {
  recordset_.pop_back();
  newPending_ = false;
  isTyped_ = false;
  current_ = count();
  if (recordset_.empty()) std::fill(editorShown_.begin(), editorShown_.end(), false);
}

// ---- Moving

void PageModel::show(std::uint32_t position) {
  current_ = position;
  isBehind_ = false;
}

void PageModel::type(wchar_t character) {
  if (!isTyped_) typed_ = recordset_[current_ - 1]->second;
  isTyped_ = true;
  typed_ += character;
}

void PageModel::moveFirst() {
  if ((mode_ != kForm && mode_ != kList) || !recordsetOpen_ || !leaveRecord()) return;
  show(1);
}

void PageModel::moveLast() {
  if ((mode_ != kForm && mode_ != kList) || !recordsetOpen_ || !leaveRecord()) return;
  show(count());
}

void PageModel::moveNext() {
  if ((mode_ != kForm && mode_ != kList) || !recordsetOpen_ || cursor() >= count() || !leaveRecord()) return;
  show(cursor() + 1);
}

void PageModel::movePrevious() {
  if (mode_ == kList && current_ > 1) --current_;
  if (mode_ != kForm || !recordsetOpen_) return;
  const std::uint32_t before = cursor();
  const bool wasRefused = isRefused();
  if (!leaveRecord()) return;
  // The record before one that was discarded is shown already.
  if (wasRefused && current_ < before) return;
  show(std::max(cursor(), 2u) - 1);
}

void PageModel::tapRow(int row) {
  current_ = static_cast<std::uint32_t>(row) + 1;
}

void PageModel::arrowKey(int step) {
  if (step < 0 && current_ > 1) --current_;
  if (step > 0 && current_ < count()) ++current_;
}

void PageModel::openNumber() {
  if (mode_ == kForm && recordsetOpen_ && leaveRecord()) holdPanel(true);
}

void PageModel::confirmNumber(std::uint32_t number) {
  if ((mode_ != kForm && mode_ != kList) || !recordsetOpen_ || !leaveRecord()) return;
  holdPanel(true);
  if (number <= count()) show(number);
}

// ---- New and deleted records

void PageModel::newRecord() {
  if (mode_ != kForm || !recordsetOpen_ || readOnly_ || !leaveRecord()) return;
  if (recordset_.empty()) buildForm();
  recordset_.push_back(std::make_shared<ModelRecord>());
  show(count());
  newPending_ = true;
  movePanel(true);
  showFormPage(true);
}

void PageModel::deleteRecord() {
  if ((mode_ != kForm && mode_ != kList) || !hasRecords() || readOnly_) return;
  isTyped_ = false;
  isBehind_ = false;
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
    if (recordset_.empty()) std::fill(editorShown_.begin(), editorShown_.end(), false);
  } else if (current_ == 0 && !recordset_.empty()) {
    current_ = 1;
  }
}

// ---- Searching

void PageModel::openFind() {
  if (mode_ == kForm && database_ && leaveRecord()) holdPanel(true);
}

void PageModel::find(const std::wstring& text) {
  if (mode_ != kForm || !database_ || !leaveRecord()) return;
  holdPanel(true);
  if (!hasRecords()) return;
  const std::uint32_t start = std::min(cursor(), count());
  const std::uint32_t found = searched(text);
  show(found != 0 ? found : start);
  isBehind_ = found != 0;
  // Both fields that are searched stand on the first page.
  if (found == 0 || formPage_ == 0) return;
  showFormPage(false);
  formPage_ = 0;
  showFormPage(true);
}

/// From the cursor to the last but one, then from the first to the start, and then the last; 0 for none.
std::uint32_t PageModel::searched(const std::wstring& text) const {
  std::vector<std::uint32_t> order;
  for (std::uint32_t position = cursor(); position < count(); ++position) order.push_back(position);
  for (std::uint32_t position = 1; position <= std::min(cursor(), count()); ++position)
    order.push_back(position);
  order.push_back(count());
  for (const std::uint32_t position : order) {
    const ModelRecord& record = *recordset_[position - 1];
    if (record.first.find(text) != std::wstring::npos || record.second.find(text) != std::wstring::npos)
      return position;
  }
  return 0;
}

// ---- The form's pages, the grid's columns and the panel

void PageModel::buildForm() {
  editorShown_.assign(fields_.size(), false);
  fieldsPerPage_ = fieldsAbovePanel();
  formPage_ = 0;
}

void PageModel::showFormPage(bool isShown) {
  const auto first = static_cast<std::size_t>(formPage_ * fieldsPerPage_);
  const std::size_t end = std::min(first + static_cast<std::size_t>(fieldsPerPage_), editorShown_.size());
  for (std::size_t field = first; field < end; ++field) editorShown_[field] = isShown;
}

/// What is shown already stays so where it belongs to another page now.
void PageModel::layOutForm() {
  if (mode_ != kForm || !recordsetOpen_) return;
  const int firstShown = formPage_ * fieldsPerPage_;
  fieldsPerPage_ = fieldsAbovePanel();
  formPage_ = firstShown / fieldsPerPage_;
  showFormPage(hasRecords());
}

void PageModel::turnFormPage(int step) {
  if (mode_ != kForm || formPage_ + step < 0 || formPage_ + step >= formPageCount()) return;
  showFormPage(false);
  formPage_ += step;
  showFormPage(true);
}

void PageModel::slideColumns(int step) {
  if (mode_ != kList || !recordsetOpen_) return;
  const int next = firstSliding_ + step;
  if (next >= 1 && next <= std::max(1, fieldCount() - 2)) firstSliding_ = next;
}

void PageModel::movePanel(bool up) {
  if (up == panelUp_) return;
  panelUp_ = up;
  layOutForm();
}

void PageModel::holdPanel(bool up) {
  const bool before = panelUp_;
  movePanel(up);
  movePanel(before);
}
