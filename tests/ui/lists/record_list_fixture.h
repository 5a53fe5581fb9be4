#pragma once

#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/paths.h"
#include "tests/ui/support/fake_pages.h"
#include "tests/ui/support/host_window.h"
#include "tests/ui/support/test_database.h"
#include "views/grid/record_list_view.h"
#include "views/shared/list_view.h"

/// The grid in a hidden window of this process, over a database of its own.
class RecordListFixture : public testing::Test {
 protected:
  void SetUp() override {
    RecordListView::registerClass(GetModuleHandleW(nullptr));  // fails but for the first test
    ASSERT_NE(host_.get(), nullptr);
    host_.onNotification([this](NMHDR& notification) { view_.handleNotification(notification); });
    window_ = view_.create(GetModuleHandleW(nullptr), host_.get(), RECT{2, 24, 242, 241});
    ASSERT_NE(window_, nullptr);
    ASSERT_NE(list(), nullptr);
  }
  void TearDown() override {
    view_.prepare(nullptr);
    document_.reset();
  }

  /// Opens a database with table T and shows the List page.
  void showTable(const wchar_t* createTable, const wchar_t* insert) {
    makeDatabase(path_, {createTable, insert});
    document_ = std::make_unique<Document>(DocumentPages{std::make_unique<FakeTables>(inSight_),
                                                         std::make_unique<FakeQueries>(inSight_), view_,
                                                         form_, bar_, prompts_});
    form_.document = document_.get();
    view_.prepare(document_.get());
    ASSERT_TRUE(document_->openDatabase(path_.c_str()));
    document_->setViewMode(ViewMode::list);
    ASSERT_TRUE(document_->isRecordsetOpen());
  }
  void showFiveFields() {
    showTable(L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer, f4 Integer)",
              L"INSERT INTO T VALUES (0, 1, 2, 3, 4), (10, 11, 12, 13, 14)");
  }

  std::vector<std::wstring> titles() {
    std::vector<std::wstring> result;
    const HWND header = listview::header(list());
    for (int column = 0; column < SendMessageW(header, HDM_GETITEMCOUNT, 0, 0); ++column) {
      wchar_t text[80] = L"";
      LVCOLUMNW description{};
      description.mask = LVCF_TEXT;
      description.pszText = text;
      description.cchTextMax = ARRAYSIZE(text);
      SendMessageW(list(), LVM_GETCOLUMNW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&description));
      result.emplace_back(text);
    }
    return result;
  }

  /// What the grid puts into a buffer of so many characters, the one behind it included, for a cell.
  /// The buffer holds '#' before.
  std::wstring answer(int row, int column, int capacity, UINT mask = LVIF_TEXT) {
    std::wstring buffer(64, L'#');
    NMLVDISPINFOW question{};
    question.hdr = {list(), RecordListView::kListId, LVN_GETDISPINFOW};
    question.item.mask = mask;
    question.item.iItem = row;
    question.item.iSubItem = column;
    question.item.pszText = buffer.data();
    question.item.cchTextMax = capacity;
    view_.handleNotification(question.hdr);
    EXPECT_EQ(question.item.pszText, buffer.data()) << "the buffer is the list's own";
    return buffer.substr(0, static_cast<std::size_t>(capacity) + 1);
  }

  RecordListView& view() { return view_; }
  Document& document() { return *document_; }
  const std::filesystem::path& path() const { return path_; }
  FakePrompts& prompts() { return prompts_; }
  HWND host() const { return host_.get(); }
  HostWindow& hostWindow() { return host_; }
  HWND window() const { return window_; }
  HWND list() const { return GetDlgItem(host(), RecordListView::kListId); }
  /// The first field of the record that was loaded.
  std::wstring shownOnForm() const { return form_.fields.empty() ? L"(none)" : form_.fields.front().shown; }
  std::wstring cell(int row, int column) { return answer(row, column, 32).c_str(); }
  /// What the grid has told since the last time, with the posted telling done.
  std::vector<std::wstring> told() {
    MSG message{};
    while (PeekMessageW(&message, list(), WM_APP, WM_APP, PM_REMOVE)) DispatchMessageW(&message);
    return prompts_.takeTexts();
  }

  PagesInSight inSight_;
  FakeForm form_{inSight_};

 private:
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("grid.cdb");
  HostWindow host_;
  RecordListView view_;
  FakeBar bar_;
  FakePrompts prompts_;
  std::unique_ptr<Document> document_;
  HWND window_ = nullptr;
};
