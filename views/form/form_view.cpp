#include "views/form/form_view.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "data/values/field_kinds.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/document.h"
#include "records/parts/look_ups.h"
#include "views/form/check_field_editor.h"
#include "views/form/date_field_editor.h"
#include "views/form/form_ids.h"
#include "views/form/text_field_editor.h"
#include "views/lookup/look_up_dialog.h"
#include "views/shared/page_area.h"
#include "views/shared/sip_state.h"

namespace {

/// Without a panel the layout remembers the place where its closed bar would be.
int sipTopWithoutPanel() {
  constexpr int kClosedBarHeight = 20;
  return HandheldGetSystemMetrics(SM_CYSCREEN) - kClosedBarHeight;
}

PageArea presentPageArea() {
  const SIZE area = HandheldGetPageArea();
  return {static_cast<int>(area.cx), static_cast<int>(area.cy)};
}

template <typename Control>
void moveTo(Control& control, const ControlPlace& place) {
  control.position({place.x, place.y, 0, 0}, SWP_NOSIZE | SWP_NOZORDER);
}

ControlPlace editorPlace(FieldEditorKind kind, int y, const FormMetrics& metrics) {
  if (kind == FieldEditorKind::checkBox) return checkBoxPlace(y);
  return kind == FieldEditorKind::date ? dateEditorPlace(y, metrics) : textEditorPlace(y, metrics);
}

std::wstring captionOf(const String& name) {
  return std::wstring(name.text()) + L":";
}

/// The system would take an ampersand for the mark of an access key.
DWORD labelStyle(const String& name) {
  return std::wcschr(name.text(), L'&') ? WS_CHILD | SS_NOPREFIX : WS_CHILD;
}

DWORD editorStyle(FieldEditorKind kind, bool readOnly) {
  constexpr DWORD kCheckBox = WS_CHILD | WS_TABSTOP | BS_AUTOCHECKBOX | BS_LEFTTEXT;
  // A text is told of taps with SS_NOTIFY only. A date with a time of day is too long for the editor.
  constexpr DWORD kDate =
      WS_CHILD | WS_TABSTOP | WS_BORDER | SS_NOTIFY | SS_CENTER | SS_CENTERIMAGE | SS_ENDELLIPSIS;
  constexpr DWORD kText = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
  if (kind == FieldEditorKind::checkBox) return kCheckBox;
  if (kind == FieldEditorKind::date) return kDate;
  return readOnly ? kText | ES_READONLY : kText;
}

class Loading {
 public:
  explicit Loading(bool& flag) : flag_(flag) { flag_ = true; }
  ~Loading() { flag_ = false; }
  Loading(const Loading&) = delete;
  Loading& operator=(const Loading&) = delete;

 private:
  bool& flag_;
};

std::unique_ptr<FieldEditor> newCheckBox(const String& name) {
  auto editor = std::make_unique<CheckFieldEditor>();
  editor->setCaption(captionOf(name).c_str());
  return editor;
}

std::unique_ptr<FieldEditor> newDateEditor(const String& name) {
  auto editor = std::make_unique<DateFieldEditor>();
  editor->setFieldName(name);
  return editor;
}

/// `document` outlives the form.
BytesZoomHost bytesHost(Document& document, std::uint32_t field) {
  return {.read = [&document, field](Bytes& bytes) { return document.readBytes(field, bytes); },
          .chooseTarget =
              [&document](const String& suggestion) { return document.chooseBytesTarget(suggestion); },
          .save = [&document, field](const String& path) { return document.saveBytes(field, path); },
          .chooseSource = [&document] { return document.chooseBytesSource(); }};
}

/// The same.
LookUpHost lookUpHost(Document& document, std::uint32_t field) {
  return {.nameOf = [&document, field](const String& key) { return document.lookUps().nameOf(field, key); },
          .choose = [&document, field](HWND owner) -> std::optional<String> {
            std::unique_ptr<LookUpRecords> records = document.lookUps().open(field);
            if (!records) return std::nullopt;
            return LookUpDialog(document.fieldName(field).text(), std::move(records)).run(owner);
          }};
}

std::unique_ptr<FieldEditor> newTextEditor(Document& document, std::uint32_t field) {
  const FieldEditorKind kind = fieldKind(document.fieldType(field)).editor;
  auto editor = std::make_unique<TextFieldEditor>();
  editor->setFieldName(document.fieldName(field));
  editor->setNumeric(kind == FieldEditorKind::digits || kind == FieldEditorKind::signedDigits);
  editor->setMinusAllowed(kind == FieldEditorKind::signedDigits);
  editor->setMaximumLength(document.fieldWidth(field));
  editor->setBinary(kind == FieldEditorKind::bytes);
  editor->setReadOnlyField(document.isFieldReadOnly(field));
  editor->setBytesHost(bytesHost(document, field));
  if (document.lookUps().isLookUp(field)) editor->setLookUpHost(lookUpHost(document, field));
  return editor;
}

}  // namespace

struct FormView::NextIds {
  int textEditor = kFirstTextEditorId;
  int checkBox = kFirstCheckBoxId;
  int dateEditor = kFirstDateEditorId;
};

void FormView::prepare(Document* document) {
  document_ = document;
  FormWrapper::listen(document ? this : nullptr);
  if (!document) tearDown();
}

void FormView::show() {
  ShowWindow(wrapper_.window(), SW_SHOW);
}

void FormView::hide() {
  ShowWindow(wrapper_.window(), SW_HIDE);
}

// ---- Building

void FormView::build() {
  tearDown();
  theTextEditors.reset();
  theDateEditors.reset();
  if (!document_ || !wrapper_.window()) return;

  refreshSipState();
  layoutSipTop_ = sipState.top == kNoSipTop ? sipTopWithoutPanel() : sipState.top;
  layoutArea_ = presentPageArea();
  metrics_ = windowFormMetrics(layoutArea_, sipState.height, document_->longestFieldName());
  NextIds ids;
  rows_.reserve(document_->fieldCount());
  for (std::uint32_t field = 0; field < document_->fieldCount(); ++field) {
    rows_.push_back(prepareRow(field, ids));
  }
  makeControls({0, std::min(rowCount(), kFieldsMadeAtOnce)});
  pageCount_ = formPageCount(rowCount(), metrics_.fieldsPerPage);
  // With its children: the bars are painted over otherwise.
  RedrawWindow(GetParent(wrapper_.window()), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormView::tearDown() {
  rows_.clear();
  pageIndex_ = 0;
  pageCount_ = 0;
}

FormView::Row FormView::prepareRow(std::uint32_t field, NextIds& ids) {
  const String& name = document_->fieldName(field);
  Row row;
  row.kind = fieldKind(document_->fieldType(field)).editor;
  if (row.kind == FieldEditorKind::checkBox) {
    row.identifier = ids.checkBox++;
    row.editor = newCheckBox(name);
  } else if (row.kind == FieldEditorKind::date) {
    row.identifier = ids.dateEditor++;
    row.editor = newDateEditor(name);
  } else {
    row.identifier = ids.textEditor++;
    row.editor = newTextEditor(*document_, field);
  }
  row.editor->watchEdits(*this);
  return row;
}

void FormView::makeControls(FieldRange fields) {
  for (std::uint32_t field = fields.first; field < fields.end; ++field) makeControls(field);
}

void FormView::makeControls(std::uint32_t field) {
  Row& row = rows_[field];
  if (row.isMade) return;
  row.isMade = true;
  const HWND parent = wrapper_.window();
  const int y = rowTop(field);
  if (row.kind != FieldEditorKind::checkBox) {
    row.label = std::make_unique<FieldLabel>();
    const String& name = document_->fieldName(field);
    row.label->create(captionOf(name).c_str(), {labelStyle(name), labelPlace(y, metrics_), parent, kLabelId});
  }
  row.editor->create({editorStyle(row.kind, document_->isFieldReadOnly(field)),
                      editorPlace(row.kind, y, metrics_), parent, row.identifier});
}

// ---- Records

void FormView::editBegun() {
  if (document_) document_->editBegun();
}

/// What comes by another way than the keys that the editors look at: the mouse, the clipboard, and whatever
/// happens to the editors that are looked after by nobody.
void FormView::controlTold(HWND control, WORD code) {
  if (isLoading_) return;
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [&](const Row& each) { return each.editor->window() == control; });
  if (row == rows_.end() || row->kind == FieldEditorKind::date) return;
  const WORD changed = row->kind == FieldEditorKind::checkBox ? BN_CLICKED : EN_UPDATE;
  if (code == changed && GetFocus() == control) editBegun();
}

void FormView::showRecord(const RecordSnapshot& record) {
  const Loading loading(isLoading_);
  const FieldSnapshot unread;
  for (std::uint32_t field = 0; field < rowCount(); ++field) {
    const bool isRead = field < record.fields().size();
    rows_[field].editor->load(isRead ? record.fields()[field] : unread, record.isNew());
  }
  // Also when another page is shown.
  if (!rows_.empty()) rows_.front().editor->takeFocus();
}

void FormView::clearEditors() {
  const Loading loading(isLoading_);
  const FieldSnapshot none;
  for (Row& row : rows_) row.editor->load(none, false);
}

bool FormView::takeChange() {
  for (Row& row : rows_) {
    if (row.editor->takeChange()) return true;
  }
  return false;
}

bool FormView::hasChange() const {
  return std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.editor->hasChange(); });
}

void FormView::showAnew(const RecordSnapshot& record) {
  const FieldSnapshot unread;
  for (std::uint32_t field = 0; field < rowCount(); ++field) {
    rows_[field].editor->loadInPlace(field < record.fields().size() ? record.fields()[field] : unread);
  }
}

FieldEditors FormView::editors() const {
  FieldEditors editors;
  editors.reserve(rows_.size());
  for (const Row& row : rows_) editors.push_back(row.editor.get());
  return editors;
}

void FormView::focusField(std::uint32_t field) {
  if (field >= rowCount()) return;
  // What was found on another page would be out of sight.
  const std::uint32_t page = field / metrics_.fieldsPerPage;
  if (page != pageIndex_) turnPage(page);
  makeControls(field);
  rows_[field].editor->takeFocus();
  rows_[field].editor->selectAll();
}

std::optional<std::uint32_t> FormView::focusedField() const {
  const HWND focus = GetFocus();
  for (std::uint32_t field = 0; field < rowCount(); ++field) {
    if (rows_[field].isMade && focus && rows_[field].editor->window() == focus) return field;
  }
  return std::nullopt;
}

// ---- Pages

int FormView::rowTop(std::uint32_t field) const {
  return formRowTop(field % metrics_.fieldsPerPage, formTopMargin());
}

void FormView::showPage(bool visible) {
  showFields(pageRange(), visible);
}

void FormView::showFields(FieldRange range, bool visible) {
  if (visible) makeControls(range);
  for (std::uint32_t field = range.first; field < range.end; ++field) {
    if (rows_[field].label) rows_[field].label->show(visible);
    rows_[field].editor->show(visible);
  }
}

void FormView::hideAllEditors() {
  showFields({0, rowCount()}, false);
}

/// The keyboard goes from an editor to the first one of the page.
void FormView::turnPage(std::uint32_t page) {
  const bool hasKeyboard = GetFocus() == wrapper_.window() || focusedField().has_value();
  hideEditors();
  pageIndex_ = page;
  showEditors();
  if (hasKeyboard && !rows_.empty()) rows_[pageRange().first].editor->takeFocus();
}

bool FormView::showNextPage() {
  if (pageIndex_ + 1 >= pageCount_) return false;
  turnPage(pageIndex_ + 1);
  return true;
}

bool FormView::showPreviousPage() {
  if (pageIndex_ == 0) return false;
  turnPage(pageIndex_ - 1);
  return true;
}

void FormView::layOut(bool force) {
  if (!document_ || !document_->isRecordsetOpen()) return;
  refreshSipState();
  if (sipState.top == kNoSipTop) sipState.top = sipTopWithoutPanel();
  const PageArea area = presentPageArea();
  const bool resized = area != layoutArea_;
  if (sipState.top == layoutSipTop_ && !resized && !force) return;
  layoutSipTop_ = sipState.top;
  // What another size asks for is done when the page is entered.
  if (document_->viewMode() != ViewMode::form) return;

  const std::uint32_t keptField = resized ? fieldToKeep() : pageRange().first;
  layoutArea_ = area;
  metrics_.fieldsPerPage = fieldsAbovePanel(area.height, sipState.height);
  pageCount_ = formPageCount(rowCount(), metrics_.fieldsPerPage);
  metrics_.editorWidth = windowFormMetrics(area, sipState.height, document_->longestFieldName()).editorWidth;
  moveRows(resized);
  pageIndex_ = keptField / metrics_.fieldsPerPage;
  // Where only the panel has moved, a control that was visible and belongs to another page now stays so until
  // that page is left.
  if (resized) hideOtherPages();
  showPage(recordCount != 0 || document_->isNewRecordPending());
}

/// The page that is shown goes on with the field that has the keyboard, or else with its first one.
std::uint32_t FormView::fieldToKeep() const {
  const FieldRange shown = pageRange();
  const std::optional<std::uint32_t> focused = focusedField();
  return focused && *focused >= shown.first && *focused < shown.end ? *focused : shown.first;
}

void FormView::hideOtherPages() {
  const FieldRange shown = pageRange();
  showFields({0, shown.first}, false);
  showFields({shown.end, rowCount()}, false);
}

/// `sized` when the editors get another width, too.
void FormView::moveRows(bool sized) {
  for (std::uint32_t field = 0; field < rowCount(); ++field) {
    const Row& row = rows_[field];
    if (!row.isMade) continue;
    const int y = rowTop(field);
    const ControlPlace place = editorPlace(row.kind, y, metrics_);
    if (row.label) moveTo(*row.label, labelPlace(y, metrics_));
    if (sized) {
      row.editor->position(place, SWP_NOZORDER);
    } else {
      moveTo(*row.editor, place);
    }
  }
}
