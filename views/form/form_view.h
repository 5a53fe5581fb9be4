#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "data/values/field_kinds.h"
#include "records/pages.h"
#include "views/form/field_editor.h"
#include "views/form/field_label.h"
#include "views/form/form_ids.h"
#include "views/form/form_layout.h"
#include "views/form/form_wrapper.h"

class Document;

/// The form of the current record in the window of a FormWrapper. Of a table of more fields than
/// kFieldsMadeAtOnce the controls of the further ones are made when their page is shown first.
class FormView final : public FormPage, private EditWatcher, private FormControlListener {
 public:
  /// As many as there are identifiers for text editors.
  static constexpr std::uint32_t kFieldsMadeAtOnce = kFirstCheckBoxId - kFirstTextEditorId;

  /// `wrapper` outlives the view.
  explicit FormView(const FormWrapper& wrapper) : wrapper_(wrapper) {}

  /// Names the Document whose record is shown, which may be null again when it ends; the editors go
  /// then. Nothing is shown without one.
  void prepare(Document* document);

  void show() override;
  void hide() override;
  /// Takes down the editors that there are before.
  void build() override;
  void tearDown() override;
  void showEditors() override { showPage(true); }
  void hideEditors() override { showPage(false); }
  void hideAllEditors() override;
  void clearEditors() override;
  void showRecord(const RecordSnapshot& record) override;
  bool takeChange() override;
  bool hasChange() const override;
  void showAnew(const RecordSnapshot& record) override;
  FieldEditors editors() const override;
  void focusField(std::uint32_t field) override;
  std::optional<std::uint32_t> focusedField() const override;
  void layOut(bool force) override;
  bool showNextPage() override;
  bool showPreviousPage() override;
  std::uint32_t pageIndex() const override { return pageIndex_; }
  std::uint32_t pageCount() const override { return pageCount_; }

 private:
  void editBegun() override;
  void controlTold(HWND control, WORD code) override;

  struct Row {
    FieldEditorKind kind{};
    int identifier = 0;
    std::unique_ptr<FieldLabel> label;  ///< none for a boolean, whose check box carries the name
    std::unique_ptr<FieldEditor> editor;
    bool isMade = false;  ///< whether its controls were created
  };
  struct NextIds;

  std::uint32_t rowCount() const { return static_cast<std::uint32_t>(rows_.size()); }
  FieldRange pageRange() const { return formPageRange(pageIndex_, metrics_.fieldsPerPage, rowCount()); }
  int rowTop(std::uint32_t field) const;
  Row prepareRow(std::uint32_t field, NextIds& ids);
  void makeControls(FieldRange fields);
  void makeControls(std::uint32_t field);
  void showPage(bool visible);
  void showFields(FieldRange range, bool visible);
  std::uint32_t fieldToKeep() const;
  void hideOtherPages();
  void moveRows(bool sized);
  void turnPage(std::uint32_t page);

  const FormWrapper& wrapper_;
  Document* document_ = nullptr;
  std::vector<Row> rows_;  // by field
  FormMetrics metrics_;
  int layoutSipTop_ = 0;  // where the input panel was when the pages were laid out
  PageArea layoutArea_;   // and how large the page area
  std::uint32_t pageIndex_ = 0;
  std::uint32_t pageCount_ = 0;
  bool isLoading_ = false;  // what the controls tell then is no doing of the user's
};
