#pragma once

#include <cstdint>
#include <optional>

#include "base/name_list.h"
#include "base/string.h"
#include "data/values/field_value_source.h"
#include "data/values/record_snapshot.h"

/// What the Document asks of the window's pages. The pages know the Document; it knows them only by
/// these interfaces, which the views implement, so that no dependency points upwards.
///
/// Indexes and rows are 0-based. Calls come on the user-interface thread. A page whose window could
/// not be created does nothing and has no items. std::bad_alloc passes through.

/// How a page of names shows them.
enum class NameStyle { largeIcons, report, smallIcons, list };

/// What both pages of names have in common.
class NamesPage {
 public:
  virtual ~NamesPage() = default;

  virtual void show() = 0;
  virtual void hide() = 0;
  /// Back to its place, after the window's size or the place of the bars has changed.
  virtual void layOut() = 0;
  /// Shows the colours as they are now.
  virtual void refreshColors() = 0;
  /// The images at the present zoom.
  virtual void loadImages() = 0;
  virtual void addItem(int index, const String& name) = 0;
  virtual void deleteItem(int index) = 0;
  virtual void deleteAllItems() = 0;
  /// The name of an item as the page was given it; empty for an index that is no item's.
  virtual String itemText(int index) = 0;
  virtual void setStyle(NameStyle style) = 0;
  /// The item that was chosen last, -1 for none.
  virtual int selectedIndex() const = 0;
  /// Whether one of the items was chosen.
  virtual bool hasChoice() const = 0;
};

/// Which item is selected after the tables were filled in, once one had been chosen before. Any other
/// number keeps the index as it is.
enum class Positioning {
  first = 1,
  last = 2,
  previous = 3,  ///< the one before, not below the first
  next = 4,      ///< the one behind; behind the last there is none, and nothing is selected
  byName = 5,    ///< the item of a given name; unchanged when there is none
};

class TablesPage : public NamesPage {
 public:
  /// Replaces the items and selects one of them: the first, or once an item was chosen, that of
  /// `positioning`. `name` is read for Positioning::byName only.
  virtual void fill(const NameList& names, Positioning positioning, const String& name) = 0;
  /// The next fill starts at the first item again.
  virtual void clearRememberedSelection() = 0;
  /// The next fill goes by its positioning, starting from this item.
  virtual void rememberSelection(int index) = 0;
};

class QueriesPage : public NamesPage {
 public:
  /// Replaces the items and selects the one at the current index.
  virtual void fill(const NameList& names) = 0;
  virtual void setSelectedIndex(int index) = 0;
  /// The same, and the list shows it at once; with -1 none is chosen.
  virtual void select(int index) = 0;
};

/// The form of the current record: an editor for each field of the recordset, on pages of which one is
/// shown. It reads the fields through the Document, which gives it the records.
class FormPage {
 public:
  virtual ~FormPage() = default;

  /// The window that carries the editors.
  virtual void show() = 0;
  virtual void hide() = 0;

  /// Makes the editors of all fields, hidden, and lays them out. Page 0 becomes the current one.
  virtual void build() = 0;
  /// Destroys the editors; there are no pages then. Nothing happens when there are none.
  virtual void tearDown() = 0;
  /// The editors of the current page.
  virtual void showEditors() = 0;
  virtual void hideEditors() = 0;
  /// Those of every page: the panel's moving leaves some visible that belong to another page then.
  virtual void hideAllEditors() = 0;
  /// The editors hold nothing, as there is no record.
  virtual void clearEditors() = 0;

  /// Shows a reading in the editors, and gives the focus to that of field 0. Of one that failed nothing is
  /// shown, and nothing can be typed until another is shown.
  virtual void showRecord(const RecordSnapshot& record) = 0;
  /// Whether the user changed a value since the last loading, as far as the first changed editor in
  /// field order; that editor's mark is taken away.
  virtual bool takeChange() = 0;
  /// The same, and no mark is taken away.
  virtual bool hasChange() const = 0;
  /// Shows another reading where the user changed nothing. The page that is shown, the keyboard and the
  /// places in the texts stay.
  virtual void showAnew(const RecordSnapshot& record) = 0;
  /// What stands in the editors. They live until the form is torn down or built anew.
  virtual FieldEditors editors() const = 0;
  /// Shows the page of this field, whose editor takes the focus; of a text editor all text is selected.
  virtual void focusField(std::uint32_t field) = 0;

  /// The field whose editor has the keyboard; none when it is elsewhere.
  virtual std::optional<std::uint32_t> focusedField() const = 0;

  /// Lays the pages out for the window's size and the input panel as they are now. Without `force` nothing
  /// happens when both are as they were. With another size the page is shown that has the field with the
  /// keyboard.
  virtual void layOut(bool force) = 0;
  /// False, and nothing happens, where there is no such page.
  virtual bool showNextPage() = 0;
  virtual bool showPreviousPage() = 0;
  /// 0-based.
  virtual std::uint32_t pageIndex() const = 0;
  virtual std::uint32_t pageCount() const = 0;
};

/// The grid of records. It shows the Document's fields and reads rows through it when it draws.
class RecordGrid {
 public:
  virtual ~RecordGrid() = default;

  virtual void show() = 0;
  virtual void hide() = 0;
  /// Back to its place, after the page area or the place of the bars has changed.
  virtual void layOut() = 0;
  /// Shows the colours as they are now.
  virtual void refreshColors() = 0;
  /// Columns for the fields of the recordset, a row for each record, currentRecord selected.
  virtual void fill() = 0;
  /// The rows have become others: shows those that there are now under the same columns, the row of
  /// currentRecord selected, and `topRow` as the first in view as far as there are rows below it. The
  /// keyboard stays where it is.
  virtual void showAnew(std::uint32_t topRow) = 0;
  /// The first row in view, 0 where there are none.
  virtual std::uint32_t topRow() = 0;
  /// Removes rows and columns. The recordset is no longer read.
  virtual void clear() = 0;
  /// From the next fill on, the columns behind the first show the fields from the second one on.
  virtual void resetColumns() = 0;
  /// Selects the row of currentRecord and scrolls it into view.
  virtual void selectCurrent() = 0;
  /// The selected row, 0 when there is none.
  virtual std::uint32_t selectedRow() = 0;
  /// Each moves the columns behind the first by one field, as far as there are fields.
  virtual void showPreviousColumn() = 0;
  virtual void showNextColumn() = 0;
  /// Makes every column as wide as its contents.
  virtual void fitColumns() = 0;
  /// Takes the row of currentRecord out, whose record was deleted.
  virtual void recordDeleted() = 0;
  /// The field that the second column shows.
  virtual std::uint32_t firstSlidingColumn() const = 0;
  /// How many columns there is room for, the first one included; there may be fewer fields.
  virtual std::uint32_t columnRoom() const = 0;
};
