#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "data/values/date_value.h"
#include "records/document.h"
#include "records/pages.h"

/// Pages without windows, which write down in one list what the Document asks of them.

using Calls = std::vector<std::string>;

/// An editor without a window.
struct FakeFieldEditor final : FieldValueSource {
  bool isEdited() const override { return content != shown; }
  String text() const override { return content.c_str(); }
  bool isChecked() const override { return content == L"-1"; }
  std::optional<double> date() const override { return dateFromText(content.c_str()); }

  std::wstring shown;    ///< what it was given
  std::wstring content;  ///< what the user left in it
};

/// Shows records as a form does, and takes what a test types.
struct FakeForm final : FormPage {
  explicit FakeForm(Calls& list) : calls(list) {}
  void show() override { calls.push_back("form.show"); }
  void hide() override { calls.push_back("form.hide"); }
  void build() override { calls.push_back("form.build"); }
  void tearDown() override { calls.push_back("form.tearDown"); }
  void showEditors() override { calls.push_back("form.showEditors"); }
  void hideEditors() override { calls.push_back("form.hideEditors"); }
  void hideAllEditors() override { calls.push_back("form.hideAllEditors"); }
  void clearEditors() override { calls.push_back("form.clearEditors"); }
  void showRecord(const RecordSnapshot& record) override {
    calls.push_back(record.isReadable() ? "form.showRecord" : "form.showRecord unread");
    fields.assign(record.fields().size(), {});
    for (std::size_t i = 0; i < fields.size(); ++i) {
      fields[i].shown = fields[i].content = record.fields()[i].text.text();
    }
  }
  bool takeChange() override {
    calls.push_back("form.takeChange");
    return changed ||
           std::any_of(fields.begin(), fields.end(), [](const auto& field) { return field.isEdited(); });
  }
  FieldEditors editors() const override {
    FieldEditors all;
    for (const FakeFieldEditor& field : fields) all.push_back(&field);
    return all;
  }
  void focusField(std::uint32_t field) override {
    calls.push_back("form.focusField " + std::to_string(field));
  }
  void layOut(bool force) override { calls.push_back(force ? "form.layOut forced" : "form.layOut"); }
  bool showNextPage() override { return false; }
  bool showPreviousPage() override { return false; }
  std::uint32_t pageIndex() const override { return 0; }
  std::uint32_t pageCount() const override { return pages; }

  Calls& calls;
  bool changed = false;  ///< a mark of a change, whatever stands in the editors
  std::vector<FakeFieldEditor> fields;
  std::uint32_t pages = 1;
};

struct FakeGrid final : RecordGrid {
  explicit FakeGrid(Calls& list) : calls(list) {}
  void show() override { calls.push_back("grid.show"); }
  void hide() override { calls.push_back("grid.hide"); }
  void layOut() override { calls.push_back("grid.layOut"); }
  void refreshColors() override { calls.push_back("grid.refreshColors"); }
  void recordDeleted() override { calls.push_back("grid.recordDeleted"); }
  std::uint32_t firstSlidingColumn() const override { return slidingColumn; }
  std::uint32_t columnRoom() const override { return 3; }
  void fill() override {
    calls.push_back("grid.fill");
    filledAt = currentRecord;
  }
  void clear() override { calls.push_back("grid.clear"); }
  void resetColumns() override { calls.push_back("grid.resetColumns"); }
  void selectCurrent() override { calls.push_back("grid.selectCurrent"); }
  std::uint32_t selectedRow() override { return row; }
  void showPreviousColumn() override { calls.push_back("grid.showPreviousColumn"); }
  void showNextColumn() override { calls.push_back("grid.showNextColumn"); }
  void fitColumns() override { calls.push_back("grid.fitColumns"); }

  Calls& calls;
  std::uint32_t row = 0;       ///< the row that is selected
  std::uint32_t filledAt = 0;  ///< currentRecord at the last fill
  std::uint32_t slidingColumn = 1;
};

/// What both pages of names do.
template <typename Page>
struct FakeNames : Page {
  FakeNames(Calls& list, std::string pageName) : calls(list), name(std::move(pageName)) {}
  void show() override { calls.push_back(name + ".show"); }
  void hide() override { calls.push_back(name + ".hide"); }
  void layOut() override { calls.push_back(name + ".layOut"); }
  void refreshColors() override { calls.push_back(name + ".refreshColors"); }
  void loadImages() override { calls.push_back(name + ".loadImages"); }
  void addItem(int index, const String& text) override {
    calls.push_back(name + ".addItem");
    items.insert(items.begin() + index, text.text());
  }
  void deleteItem(int index) override {
    calls.push_back(name + ".deleteItem " + std::to_string(index));
    items.erase(items.begin() + index);
  }
  bool hasChoice() const override { return selected >= 0 && !items.empty(); }
  int selectedIndex() const override { return selected; }
  void deleteAllItems() override {
    calls.push_back(name + ".deleteAllItems");
    items.clear();
  }
  String itemText(int index) override {
    const auto place = static_cast<std::size_t>(index);
    return place < items.size() ? String(items[place].c_str()) : String();
  }
  void setStyle(NameStyle style) override {
    calls.push_back(name + ".setStyle " + std::to_string(static_cast<int>(style)));
  }

  void take(const NameList& names) {
    items.clear();
    for (std::uint32_t i = 0; i < names.size(); ++i) items.emplace_back(names[i].text());
    if (report) report();
  }

  Calls& calls;
  std::string name;
  std::vector<std::wstring> items;
  int selected = 0;
  std::function<void()> report;  ///< what the list reports while it is filled
};

struct FakeTables final : FakeNames<TablesPage> {
  explicit FakeTables(Calls& list) : FakeNames(list, "tables") {}
  void fill(const NameList& names, Positioning positioning, const String& toFind) override {
    calls.push_back("tables.fill " + std::to_string(static_cast<int>(positioning)));
    wanted = toFind.text();
    take(names);
  }
  void clearRememberedSelection() override { calls.push_back("tables.clearRememberedSelection"); }
  void rememberSelection(int index) override {
    calls.push_back("tables.rememberSelection " + std::to_string(index));
  }

  std::wstring wanted;  ///< the name that the last fill was given
};

struct FakeQueries final : FakeNames<QueriesPage> {
  explicit FakeQueries(Calls& list) : FakeNames(list, "queries") {}
  void fill(const NameList& names) override {
    calls.push_back("queries.fill");
    take(names);
  }
  void setSelectedIndex(int index) override {
    calls.push_back("queries.setSelectedIndex " + std::to_string(index));
    selected = index;
  }
};

/// Keeps the facts that it was last given, and the position text.
struct FakeBar final : CommandBar {
  void showCommands(const CommandFacts& shown) override { facts = shown; }
  void rebuildMenuBar() override { ++rebuilt; }
  void setPositionText(const wchar_t* text) override { position = text; }

  int rebuilt = 0;  ///< how often
  bool inMenu(PopupMenu menu, int command) const { return isAvailable(command, menu, facts); }
  bool onToolbar(int command) const { return isAvailable(command, PopupMenu::none, facts); }

  CommandFacts facts;
  std::wstring position;
};

/// Answers as it was told, and writes down what it was asked.
struct FakePrompts final : UserPrompts {
  explicit FakePrompts(Calls& list) : calls(list) {}
  void tell(PromptOwner owner, Notice notice, const wchar_t* text, const wchar_t* caption) override {
    messages.push_back({owner, text, caption, notice});
  }
  bool ask(PromptOwner owner, Question question, const wchar_t* text, const wchar_t* caption) override {
    messages.push_back({owner, text, caption, question});
    return agrees;
  }
  std::optional<String> chooseFile(FileChoice choice) override {
    calls.push_back("prompts.chooseFile " + std::to_string(static_cast<int>(choice)));
    return file;
  }
  LostFileChoice askAboutLostFile(const String& path, bool isReplaced) override {
    calls.push_back(isReplaced ? "prompts.fileReplaced" : "prompts.fileGone");
    lostFile = path.text();
    if (lostFileChoices.empty()) return LostFileChoice::later;
    const LostFileChoice choice = lostFileChoices.front();
    lostFileChoices.pop_front();
    return choice;
  }
  std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) override {
    calls.push_back("prompts.askRecordNumber " + std::to_string(highest));
    return number;
  }
  void showFindDialog(FindState& state, NameList fieldNames) override {
    calls.push_back("prompts.showFindDialog " + std::to_string(fieldNames.size()));
    state.newSearch = true;
    setFind(state);
  }
  void refillFindDialog() override { calls.push_back("prompts.refillFindDialog"); }
  bool keepGoing(const Progress& progress) override {
    if (progress.what == Progress::What::searching) return goesOnSearching(progress.tested, progress.all);
    return goesOnBusy(progress.what);
  }
  void endProgress() override { ++progressesEnded; }
  void tellWhenOver() override { ++toldWhenOver; }
  void returnToFindDialog() override {}
  void raiseInputPanel() override { calls.push_back("prompts.raiseInputPanel"); }

  struct Message {
    PromptOwner owner;
    std::wstring text;
    std::wstring caption;
    std::variant<Notice, Question> kind;
    bool operator==(const Message&) const = default;
  };
  Calls& calls;
  std::vector<Message> messages;
  bool agrees = false;                         ///< to what it is asked
  std::deque<LostFileChoice> lostFileChoices;  ///< one for each question, later behind the last
  std::wstring lostFile;                       ///< what was asked about
  std::function<bool(std::uint32_t, std::uint32_t)> goesOnSearching = [](std::uint32_t, std::uint32_t) {
    return true;
  };
  std::function<bool(Progress::What)> goesOnBusy = [](Progress::What) { return true; };
  int progressesEnded = 0;
  int toldWhenOver = 0;
  std::function<void(FindState&)> setFind = [](FindState&) {};  ///< what the user enters for a search
  std::optional<String> file;
  std::optional<std::uint32_t> number;
};

/// A Document with fake pages.
struct FakeWindow {
  FakeWindow() {
    auto ownTables = std::make_unique<FakeTables>(calls);
    auto ownQueries = std::make_unique<FakeQueries>(calls);
    tables = ownTables.get();
    queries = ownQueries.get();
    document = std::make_unique<Document>(
        DocumentPages{std::move(ownTables), std::move(ownQueries), grid, form, bar, prompts});
  }

  /// The calls since this was asked last.
  Calls takeCalls() { return std::exchange(calls, {}); }

  Calls calls;
  FakeGrid grid{calls};
  FakeForm form{calls};
  FakeBar bar;
  FakePrompts prompts{calls};
  FakeTables* tables = nullptr;
  FakeQueries* queries = nullptr;
  std::unique_ptr<Document> document;
};
