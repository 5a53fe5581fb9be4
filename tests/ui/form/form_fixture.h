#pragma once

#include <windows.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

#include "gtest/gtest.h"
#include "tests/support/paths.h"
#include "tests/ui/form/fake_panel.h"
#include "tests/ui/support/fake_pages.h"
#include "tests/ui/support/host_window.h"
#include "views/form/form_view.h"
#include "views/form/form_wrapper.h"

/// A form in a hidden window of this process, over a database of its own.
class FormFixture : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Opens a database with table T and shows its first record, as entering the Form page does.
  void showTable(const std::wstring& createTable, std::initializer_list<const wchar_t*> inserts = {});
  /// A table of so many fields of a type, named f0, f1 and so on, with one record: of the text "v", the
  /// number 5 or 4 January 1900.
  void showFields(int count, const wchar_t* type);
  /// A table with a field of each kind and one record.
  void showOneOfEach();
  /// What the store holds in the field of the record with this number.
  std::wstring storedText(std::uint32_t field, std::uint32_t record = 1);
  /// Stores the form as the leaving of a record does.
  void commit();

  HWND form() const { return wrapper_.window(); }
  HWND control(int identifier) const { return GetDlgItem(form(), identifier); }
  HWND textEditor(int index = 0) const { return control(1200 + index); }
  HWND checkBox(int index = 0) const { return control(1400 + index); }
  HWND dateEditor(int index = 0) const { return control(1600 + index); }
  /// The label in a row from the top of any page, the first that was made.
  HWND label(const std::wstring& text) const;
  /// Sends a text as the keyboard does, with the focus in the control.
  static void type(HWND control, const std::wstring& text);
  static void tap(HWND control, UINT message = WM_LBUTTONDOWN) {
    SendMessageW(control, message, MK_LBUTTON, 0);
  }

  FormView& view() { return view_; }
  Document& document() { return *document_; }
  FakePrompts& prompts() { return prompts_; }
  const std::filesystem::path& path() const { return path_; }
  HWND host() const { return host_.get(); }
  FakePanel& panel() { return panel_; }

 private:
  FakePanel panel_;
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("form.cdb");
  HostWindow host_;
  FormWrapper wrapper_;
  FormView view_{wrapper_};
  PagesInSight inSight_;
  FakeGrid grid_{inSight_};
  FakeBar bar_;
  FakePrompts prompts_;
  std::unique_ptr<Document> document_;
};
