#pragma once

#include <cstdint>

#include "records/pages.h"
#include "views/form_wrapper.h"

class Document;

/// The form of the current record in the window of a FormWrapper.
class FormView final : public FormPage {
 public:
  /// `wrapper` outlives the view.
  explicit FormView(const FormWrapper& wrapper) : wrapper_(wrapper) {}

  /// Names the Document whose record is shown, which may be null again when it ends. Nothing is shown
  /// without one.
  void prepare(Document* document) { document_ = document; }

  void show() override;
  void hide() override;
  void build() override {}
  void tearDown() override {}
  void showEditors() override {}
  void hideEditors() override {}
  void loadRecord() override {}
  bool takeChange() override { return false; }
  void writeRecord() override {}
  void focusField(std::uint32_t) override {}
  void layOut(bool) override {}
  bool showNextPage() override { return false; }
  bool showPreviousPage() override { return false; }
  std::uint32_t pageIndex() const override { return 0; }
  std::uint32_t pageCount() const override { return 0; }

 private:
  const FormWrapper& wrapper_;
  Document* document_ = nullptr;
};
