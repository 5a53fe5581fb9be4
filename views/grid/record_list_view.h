#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <string>

#include "base/settings/column_widths.h"
#include "base/string.h"
#include "data/outcome.h"
#include "owners/handles.h"
#include "records/pages.h"
#include "views/grid/cell_tips.h"
#include "views/shared/window_subclass.h"

class Document;

/// The List page: a grid with a row for each record and up to three columns, the first field and two
/// further fields that the user moves over the others; more where the window is wide enough. The grid holds
/// no data: it asks for each text when it draws, and the list's own cursor over the records is moved to the
/// row that is drawn. What can't be read is drawn as kNotReadable, and told once for each filling.
///
/// The list control is a child of the tab control, so its notifications come through the tab control's
/// procedure to handleNotification. The window of class "Record List View", also a child of the tab
/// control, makes the list at its creation and stays hidden.
class RecordListView final : public RecordGrid {
 public:
  static constexpr int kListId = 2010;
  static constexpr int kLeastColumnRoom = 3;
  static constexpr int kColumnWidth = 75;
  /// Notification (WM_NOTIFY, an NMRGINFO) to the tab control: the user taps and holds a column's title, or
  /// presses the right button there. dwItemSpec is the field of the column.
  static constexpr UINT kColumnMenu = 1001;
  static constexpr wchar_t kNotReadable[] = L"<not readable>";

  /// Called once, before create.
  static bool registerClass(HINSTANCE instance);

  RecordListView() = default;
  ~RecordListView() override = default;
  RecordListView(const RecordListView&) = delete;
  RecordListView& operator=(const RecordListView&) = delete;

  /// Creates the window, hidden, at a place in the tab control, and in it the list, hidden too. The
  /// windows live as long as the tab control. Null when the window can't be created; without the list
  /// the page stays empty.
  HWND create(HINSTANCE instance, HWND tabControl, const RECT& place);

  /// Makes the fonts and names the Document whose records are shown, which may be null again when it
  /// ends. Nothing is shown without one.
  void prepare(Document* document);

  /// A WM_NOTIFY message of the tab control; those of other controls change nothing. The answer to it where
  /// it asks for one (LVN_ODFINDITEM), else 0. No exception leaves.
  LRESULT handleNotification(NMHDR& notification) noexcept;

  void show() override;
  void hide() override;
  void layOut() override;
  void refreshColors() override;
  void fill() override;
  void showAnew(std::uint32_t topRow) override;
  std::uint32_t topRow() override;
  void clear() override;
  void resetColumns() override { firstSlidingColumn_ = 1; }
  void selectCurrent() override;
  std::uint32_t selectedRow() override;
  void showPreviousColumn() override;
  void showNextColumn() override;
  void fitColumns() override;
  /// Takes the row of currentRecord, which was deleted, out of the grid.
  void recordDeleted() override;
  std::uint32_t firstSlidingColumn() const override {
    return static_cast<std::uint32_t>(firstSlidingColumn_);
  }
  std::uint32_t columnRoom() const override { return static_cast<std::uint32_t>(columnRoom_); }
  /// Makes fonts and columns at the present zoom.
  void zoomChanged();
  /// Where a menu opens below the header, on the screen.
  POINT columnMenuPlace() const;

 private:
  bool createList(HWND tabControl);
  RECT listRectangle() const;
  void createFonts();
  void applyColors();
  int fieldOfColumn(int column) const { return column == 0 ? 0 : firstSlidingColumn_ + column - 1; }
  void readWidths();
  int widthOf(int field) const;
  void reckonColumns();
  void fitColumnCount();
  void insertColumns(int from);
  void deleteColumns();
  void rebuildColumns();
  void resetItems();
  void forgetReadings();
  void chooseRow(int row);

  // record_list_notifications.cpp
  void giveText(LVITEMW& item);
  void expectRows(const NMLVCACHEHINT& rows);
  String cellText(std::uint32_t row, std::uint32_t field);
  std::wstring tipText(int row, int column);
  void noteFailure(const Outcome& reading);
  void noteNoMemory() noexcept;
  void tellFailure();
  LRESULT findTyped(const NMLVFINDITEMW& search);
  void keyPressed(WORD key);
  void itemChanged(const NMLISTVIEW& change);

  // Of the list, before itself.
  LRESULT listMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT doubleTapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT tapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT keyPressedInList(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT drawnWhileBusy(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT failureNoted(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  // record_list_header.cpp
  LRESULT headerReported(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void fitColumnToView(int column);
  void noteWidth(int column);
  std::wstring titleOf(int field) const;
  void markColumn(int column);
  LRESULT headerMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerPressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerMoved(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerReleased(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerHeld(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerRightPressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT headerRightReleased(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void endHeaderPress(HWND window);
  void askForColumnMenu(HWND header, POINT place);

  static LRESULT windowCreated(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  static constexpr std::int64_t kNoRow = -1;
  // To the list, from itself.
  static constexpr UINT kFailureNoted = WM_APP;
  static constexpr UINT kDrawnWhileBusy = WM_APP + 1;

  Document* document_ = nullptr;
  HWND tabControl_ = nullptr;
  HWND list_ = nullptr;
  WindowSubclass listSubclass_{[this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return listMessage(window, message, wParam, lParam);
  }};
  CellTips tips_{[this](int row, int column) { return tipText(row, column); }};
  WindowSubclass headerSubclass_{[this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return headerMessage(window, message, wParam, lParam);
  }};
  bool isHeaderPressed_ = false;
  POINT headerPlace_{};   // where it is pressed
  UniqueFont smallFont_;  // 8 point
  UniqueFont largeFont_;  // 10 point
  int fieldCount_ = 0;
  int columnCount_ = 0;
  int columnRoom_ = kLeastColumnRoom;
  ColumnWidths widths_;              // of what the grid was filled with
  bool isDrawnWhileBusy_ = false;    // texts were left out, to be drawn once more
  int firstSlidingColumn_ = 1;       // the field in column 1
  std::int64_t cachedRow_ = kNoRow;  // the row that the list's cursor was last moved to for drawing
  Outcome failure_;                  // the first since the grid was filled
  ULONGLONG noReadingBefore_ = 0;    // by GetTickCount64
};
