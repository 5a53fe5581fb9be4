#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data/values/date_value.h"
#include "gmock/gmock.h"
#include "records/document.h"
#include "records/pages.h"
#include "tests/ui/support/fake_prompts.h"

/// Pages without windows. They keep what a user would see of them, which a test reads and into which it types
/// and taps.

/// The pages that are in sight: one at a time, or the test fails.
class PagesInSight {
 public:
  void show(const std::string& page) {
    if (is(page)) return;
    EXPECT_THAT(pages_, testing::IsEmpty()) << "another page is still in sight when " << page << " comes";
    pages_.push_back(page);
  }
  void hide(const std::string& page) { std::erase(pages_, page); }
  bool is(const std::string& page) const {
    return std::find(pages_.begin(), pages_.end(), page) != pages_.end();
  }

 private:
  std::vector<std::string> pages_;
};

/// An editor without a window.
struct FakeFieldEditor final : FieldValueSource {
  bool isEdited() const override { return loaded || content != shown; }
  String text() const override { return content.c_str(); }
  const Bytes* bytes() const override { return loaded ? &*loaded : nullptr; }
  bool isChecked() const override { return content == L"-1"; }
  std::optional<double> date() const override { return dateFromText(content.c_str()); }

  std::wstring shown;           ///< what it was given
  std::wstring content;         ///< what the user left in it
  std::optional<Bytes> loaded;  ///< what he has loaded from a file
};

/// Shows records as a form does, and takes what a test types.
struct FakeForm final : FormPage {
  explicit FakeForm(PagesInSight& inSight) : pages(inSight) {}

  void show() override { pages.show("form"); }
  void hide() override {
    pages.hide("form");
    isLaidOut = false;
  }
  void build() override {
    fields.assign(document ? document->fieldCount() : 0, {});
    editorsShown = strayEditorsShown = false;
    isLaidOut = true;
    ++builds;
    forgetRecord();
  }
  void tearDown() override {
    fields.clear();
    editorsShown = strayEditorsShown = false;
    forgetRecord();
  }
  void showEditors() override { editorsShown = !fields.empty(); }
  void hideEditors() override { editorsShown = false; }
  void hideAllEditors() override { editorsShown = strayEditorsShown = false; }
  void clearEditors() override {
    for (FakeFieldEditor& field : fields) field = {};
    forgetRecord();
  }
  void showRecord(const RecordSnapshot& read) override {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      fields[i].shown = i < read.fields().size() ? read.fields()[i].text.text() : L"";
      fields[i].content = fields[i].shown;
      fields[i].loaded.reset();
    }
    record = read.isReadable() ? std::optional(read.position()) : std::nullopt;
    isUnreadable = !read.isReadable();
    focus = 0;
  }
  bool takeChange() override {
    return std::exchange(changed, false) ||
           std::any_of(fields.begin(), fields.end(), [](const auto& field) { return field.isEdited(); });
  }
  bool hasChange() const override {
    return changed ||
           std::any_of(fields.begin(), fields.end(), [](const auto& field) { return field.isEdited(); });
  }
  void showAnew(const RecordSnapshot& read) override {
    const std::uint32_t kept = focus;
    showRecord(read);
    focus = kept;
    ++shownAnew;
  }
  FieldEditors editors() const override {
    FieldEditors all;
    for (const FakeFieldEditor& field : fields) all.push_back(&field);
    return all;
  }
  void focusField(std::uint32_t field) override { focus = field; }
  std::optional<std::uint32_t> focusedField() const override { return focus; }
  void layOut(bool force) override { isLaidOut = isLaidOut || force; }
  bool showNextPage() override { return false; }
  bool showPreviousPage() override { return false; }
  std::uint32_t pageIndex() const override { return 0; }
  std::uint32_t pageCount() const override { return pageTotal; }

  /// "record 2", "a record that can't be read", "empty editors", "no editors".
  std::string sight() const {
    std::string seen = isUnreadable ? "a record that can't be read"
                       : record     ? "record " + std::to_string(*record)
                                    : "empty editors";
    if (!editorsShown) seen = "no editors";
    if (strayEditorsShown) seen += " and some of another page";
    return isLaidOut ? seen : seen + ", not laid out";
  }

  PagesInSight& pages;
  Document* document = nullptr;  ///< whose fields it has editors for
  bool changed = false;          ///< a mark of a change, whatever stands in the editors
  std::vector<FakeFieldEditor> fields;
  int builds = 0;     ///< which time the editors were made
  int shownAnew = 0;  ///< how often the user's place was kept
  std::uint32_t pageTotal = 1;
  bool editorsShown = false;       ///< of the page that is shown
  bool strayEditorsShown = false;  ///< of other pages, as the panel's moving leaves them
  bool isLaidOut = true;           ///< for what the window is since it was hidden last
  std::optional<std::uint32_t> record;
  bool isUnreadable = false;
  std::uint32_t focus = 0;  ///< the field whose editor has the keyboard

 private:
  void forgetRecord() {
    record.reset();
    isUnreadable = false;
  }
};

struct FakeGrid final : RecordGrid {
  explicit FakeGrid(PagesInSight& inSight) : pages(inSight) {}

  void show() override { pages.show("grid"); }
  void hide() override { pages.hide("grid"); }
  void layOut() override {}
  void refreshColors() override {}
  void fill() override {
    rowCount = recordCount;
    selected = currentRecord;
    if (std::exchange(beginsAnew, false)) slidingColumn = 1;
    isFitted = false;
    ++fills;
  }
  void showAnew(std::uint32_t first) override {
    rowCount = recordCount;
    selected = currentRecord;
    top = first;
    ++shownAnew;
  }
  std::uint32_t topRow() override { return rowCount == 0 ? 0 : top; }
  void clear() override { rowCount = selected = 0; }
  void resetColumns() override { beginsAnew = true; }
  void selectCurrent() override { selected = currentRecord; }
  std::uint32_t selectedRow() override { return selected == 0 ? 0 : selected - 1; }
  void showPreviousColumn() override { --slidingColumn; }
  void showNextColumn() override { ++slidingColumn; }
  void fitColumns() override { isFitted = true; }
  void recordDeleted() override {
    --rowCount;
    selected = currentRecord;
  }
  std::uint32_t firstSlidingColumn() const override { return slidingColumn; }
  std::uint32_t columnRoom() const override { return 3; }

  /// "row 2 of 3", "no rows".
  std::string sight() const {
    return rowCount == 0 ? "no rows" : "row " + std::to_string(selected) + " of " + std::to_string(rowCount);
  }

  PagesInSight& pages;
  std::uint32_t rowCount = 0;
  std::uint32_t selected = 0;  ///< from 1; 0 for none
  std::uint32_t slidingColumn = 1;
  bool beginsAnew = false;  ///< the next filling shows the fields from the second one on
  bool isFitted = false;    ///< since it was filled
  int fills = 0;            ///< which time it was filled
  std::uint32_t top = 0;    ///< the first row in view
  int shownAnew = 0;        ///< how often the user's place was kept
};

/// What both pages of names do.
template <typename Page>
struct FakeNames : Page {
  FakeNames(PagesInSight& inSight, std::string pageName, int first)
      : pages(inSight), name(std::move(pageName)), selected(first) {}

  void show() override { pages.show(name); }
  void hide() override { pages.hide(name); }
  void layOut() override {}
  void refreshColors() override {}
  void loadImages() override {}
  void addItem(int index, const String& text) override { items.insert(items.begin() + index, text.text()); }
  void deleteItem(int index) override { items.erase(items.begin() + index); }
  void deleteAllItems() override { items.clear(); }
  bool hasChoice() const override { return selected >= 0 && !items.empty(); }
  int selectedIndex() const override { return selected; }
  String itemText(int index) override {
    const auto place = static_cast<std::size_t>(index);
    return place < items.size() ? String(items[place].c_str()) : String();
  }
  void setStyle(NameStyle wanted) override { style = wanted; }

  /// The name that is selected; empty for none.
  std::wstring chosen() const {
    const auto place = static_cast<std::size_t>(selected);
    return place < items.size() ? items[place] : L"";
  }
  void take(const NameList& names) {
    items.clear();
    for (std::uint32_t i = 0; i < names.size(); ++i) items.emplace_back(names[i].text());
    ++fills;
  }
  void tellSelection() const {
    if (report) report();
  }

  PagesInSight& pages;
  std::string name;
  std::vector<std::wstring> items;
  int selected;
  int fills = 0;  ///< which time it was filled
  std::optional<NameStyle> style;
  std::function<void()> report;  ///< what the list reports while it is filled
};

/// Selects as the real one does, by what it remembers.
struct FakeTables final : FakeNames<TablesPage> {
  explicit FakeTables(PagesInSight& inSight) : FakeNames(inSight, "tables", -1) {}
  String itemText(int index) override {
    rememberSelection(index);
    return FakeNames::itemText(index);
  }
  void fill(const NameList& names, Positioning positioning, const String& toFind) override {
    take(names);
    if (!items.empty()) selected = isRemembered ? positioned(positioning, toFind.text()) : 0;
    tellSelection();
  }
  void clearRememberedSelection() override { isRemembered = false; }
  void rememberSelection(int index) override {
    selected = index;
    isRemembered = true;
  }

  bool isRemembered = false;

 private:
  int positioned(Positioning positioning, const std::wstring& toFind) const {
    const int count = static_cast<int>(items.size());
    const auto found = std::find(items.begin(), items.end(), toFind);
    switch (positioning) {
      case Positioning::first:
        return 0;
      case Positioning::last:
        return count - 1;
      case Positioning::previous:
        return std::max(selected - 1, 0);
      case Positioning::next:
        return std::min(selected + 1, count);
      case Positioning::byName:
        return found == items.end() ? selected : static_cast<int>(found - items.begin());
    }
    return selected;
  }
};

struct FakeQueries final : FakeNames<QueriesPage> {
  explicit FakeQueries(PagesInSight& inSight) : FakeNames(inSight, "queries", 0) {}
  void fill(const NameList& names) override {
    take(names);
    tellSelection();
  }
  void setSelectedIndex(int index) override { selected = index; }
  void select(int index) override {
    selected = index;
    tellSelection();
  }
};

/// A Document with fake pages.
struct FakeWindow {
  FakeWindow() {
    auto ownTables = std::make_unique<FakeTables>(pages);
    auto ownQueries = std::make_unique<FakeQueries>(pages);
    tables = ownTables.get();
    queries = ownQueries.get();
    document = std::make_unique<Document>(
        DocumentPages{std::move(ownTables), std::move(ownQueries), grid, form, bar, prompts});
    form.document = document.get();
  }

  /// "tables", "form: record 2", "grid: row 2 of 3", "queries", "nothing".
  std::string sight() const {
    if (pages.is("form")) return "form: " + form.sight();
    if (pages.is("grid")) return "grid: " + grid.sight();
    return pages.is("tables") ? "tables" : pages.is("queries") ? "queries" : "nothing";
  }
  /// The user chooses a row of the grid, from 1.
  void tapRow(std::uint32_t row) {
    grid.selected = currentRecord = row;
    document->rowChosen();
  }

  PagesInSight pages;
  FakeGrid grid{pages};
  FakeForm form{pages};
  FakeBar bar;
  FakePrompts prompts;
  FakeTables* tables = nullptr;
  FakeQueries* queries = nullptr;
  std::unique_ptr<Document> document;
};
