#include "tests/ui/program/states/modelled_pages.h"

#include <windows.h>

#include <memory>
#include <sstream>
#include <utility>

#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/program/states/page_window.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/test_database.h"

namespace {

std::string narrow(const std::wstring& text) {
  return std::filesystem::path(text).string();
}

ModelTable table(std::wstring name, int fieldCount, int recordCount) {
  ModelTable result{std::move(name), {}, {}, false};
  for (int field = 0; field < fieldCount; ++field) result.fields.push_back(L"f" + std::to_wstring(field));
  for (int record = 1; record <= recordCount; ++record) {
    const std::wstring number = std::to_wstring(record);
    result.records.push_back(
        std::make_shared<ModelRecord>(ModelRecord{number, fieldCount > 1 ? L"r" + number : L""}));
  }
  return result;
}

ModelTable strict(std::wstring name, int recordCount) {
  ModelTable result = table(std::move(name), 2, recordCount);
  result.isStrict = true;
  return result;
}

void write(const ModelDatabase& database) {
  makeDatabase(database.path, {});
  automationtest::SqliteFile file(database.path);
  for (const ModelTable& each : database.tables) {
    const bool queries = each.name == kModelQueryTable;
    std::string create = "CREATE TABLE [" + narrow(each.name) + "] (";
    for (std::size_t field = 0; field < each.fields.size(); ++field) {
      create += (field == 0 ? "" : ", ") + narrow(each.fields[field]) +
                (field == 1 || queries ? " Text" : " Integer") +
                (field == 0 && each.isStrict ? " NOT NULL" : "");
    }
    file.run(create + ")");
    for (const auto& record : each.records) {
      std::string insert = "INSERT INTO [" + narrow(each.name) + "] VALUES ('" + narrow(record->first) + "'";
      if (each.fields.size() > 1) insert += ", '" + narrow(record->second) + "'";
      for (std::size_t field = 2; field < each.fields.size(); ++field) insert += ", 7";
      file.run(insert + ")");
    }
  }
}

}  // namespace

Pages::Pages(const std::filesystem::path& folder)
    : model({{kBig, L"Wide", 3, false}, {kReadOnly, L"Wide", -1, true}, {kWrong, L"", -1, false}}),
      folder_(folder) {
  ModelTable queries{kModelQueryTable, {L"QueryName", L"SQL"}, {}, false};
  for (const auto& [name, sql] : {std::pair{L"big", kBig}, {L"read only", kReadOnly}, {L"wrong", kWrong}})
    queries.records.push_back(std::make_shared<ModelRecord>(ModelRecord{name, sql}));
  kept_.push_back({folder / L"many.cdb",
                   {table(L"Wide", 11, 6), table(L"One", 2, 1), table(L"Empty", 3, 0), strict(L"Strict", 2),
                    strict(L"Strict too", 0), queries}});
  kept_.push_back({folder / L"plain.cdb", {table(L"Solo", 5, 3)}});
  kept_.push_back({folder / L"bare.cdb", {}});
  for (const ModelDatabase& database : kept_) {
    write(database);
    std::filesystem::copy_file(database.path, database.path + L".kept");
  }
}

// ---- Databases

void Pages::open(std::size_t which) {
  const ModelDatabase& database = kept_[which];
  if (model.isOpen() && used_.holdsTheSameAs(database)) return;
  pagewindow::command(ID_DATABASE_CLOSE);
  model.close();
  constexpr BOOL kAlsoExisting = FALSE;
  CopyFileW((database.path + L".kept").c_str(), database.path.c_str(), kAlsoExisting);
  used_ = database.copy();
  openAgain();
}

void Pages::openAgain() {
  PromptAnswers::setFile(used_.path);
  pagewindow::command(ID_DATABASE_OPEN);
  if (model.leaveRecord()) model.open(&used_);
}

void Pages::openNew() {
  const std::filesystem::path path = folder_ / (L"made" + std::to_wstring(++madeCount_) + L".cdb");
  PromptAnswers::setFile(path.wstring());
  pagewindow::command(ID_DATABASE_NEW);
  const bool leaves = model.leaveRecord();
  expect(std::filesystem::exists(path) == leaves, "the new file");
  if (!leaves) return;
  model.closeOnly();
  used_ = {path.wstring(), {}};
  model.open(&used_);
}

// ---- Pages and names

void Pages::showPage(int page) {
  pagewindow::clickTab(page);
  model.tapTab(page);
}

void Pages::tapName(int index) {
  if (index < 0 || index >= model.nameCount()) return;
  pagewindow::tapName(index);
  model.tapName(index);
}

/// Which name a key leads to is the list's own to say. What it leads to is chosen.
void Pages::pressKeyInNames(unsigned short key) {
  if (model.nameCount() == 0) return;
  const pagewindow::ChosenName before = pagewindow::chosenName();
  pagewindow::pressKeyInNames(key);
  const pagewindow::ChosenName chosen = pagewindow::chosenName();
  expect(chosen.index >= 0, "a key leaves no name chosen");
  if (key == VK_HOME) expect(chosen.index == 0, "Home leads elsewhere");
  if (key == VK_END) expect(chosen.index == model.nameCount() - 1, "End leads elsewhere");
  if (!(chosen == before)) model.tapName(chosen.index);
}

void Pages::useTable(int index) {
  showPage(kTables);
  tapName(index);
}

void Pages::useQuery(int index) {
  showPage(kQueries);
  tapName(index);
}

// ---- Records

void Pages::type() {
  if (!model.canType()) return;
  pagewindow::typeIntoSecondEditor(L'x');
  model.type(L'x');
}

void Pages::newRecord() {
  if (model.isRecordsetOpen() && !model.canChangeRecords()) return;
  pagewindow::command(ID_RECORD_NEW);
  model.newRecord();
}

void Pages::find(const wchar_t* text) {
  {
    const DialogScript script([text](HWND dialog) { pagewindow::findInAllFields(dialog, text); });
    pagewindow::command(ID_FIND);
    dispatchPosted();
  }
  model.find(text);
}

void Pages::pressPanelButton() {
  pagewindow::pressPanelButton();
  model.movePanel(!model.isPanelUp());
}

void Pages::setDiscards(bool discards) {
  PromptAnswers::setBox(discards ? IDYES : IDOK);
  model.setDiscards(discards);
}

// ---- Comparing

void Pages::expect(bool holds, const char* otherwise) {
  if (!holds) complaint_ += std::string("\n  ") + otherwise;
}

bool Pages::agrees() {
  dispatchPosted();
  const Facts expected = model.facts();
  const Facts shown = pagewindow::facts();
  changed_ = shown != seen_;
  seen_ = shown;
  const std::string complaint = std::exchange(complaint_, {});
  if (expected == shown && complaint.empty()) return true;
  std::ostringstream text;
  text << trail << ":" << complaint;
  for (const auto& [name, value] : expected) {
    const auto found = shown.find(name);
    if (found == shown.end() || found->second != value)
      text << "\n  " << name << ": " << (found == shown.end() ? "missing" : narrow(found->second))
           << " instead of " << narrow(value);
  }
  for (const auto& [name, value] : shown) {
    if (!expected.contains(name)) text << "\n  " << name << ": " << narrow(value) << ", which should not be";
  }
  failure = text.str();
  return false;
}
