#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

#include "data/values/schema.h"

/// The fields of a new table in a list view of two columns. Rows are 0-based.
class FieldList {
 public:
  /// Takes a list view without columns, which has to outlive this object's use.
  void attach(HWND list);
  /// The widths of the columns at the present zoom.
  void fitColumns() const;

  int count() const;
  /// -1 when no row is selected.
  int selected() const;
  std::vector<NewField> fields() const;

  /// Behind the last row.
  void append(const NewField& field) const { insert(count(), field); }
  /// The row of that index and those behind it move down by one.
  void insert(int row, const NewField& field) const;
  void removeSelected() const;
  void removeAll() const;
  /// Each moves the selected row by one and gives the list the focus; nothing happens at the end.
  /// The name is cut at 100 characters, the type at 50.
  void moveSelectedUp() const;
  void moveSelectedDown() const;

 private:
  NewField field(int row) const;
  void move(int from, int to) const;

  HWND list_ = nullptr;
};
