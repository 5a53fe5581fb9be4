#include "tests/ui/modelled_pages.h"

#include <memory>
#include <sstream>
#include <utility>

#include "tests/automation/sqlite_file.h"
#include "tests/ui/dialog_script.h"
#include "tests/ui/test_database.h"

namespace {

std::string narrow(const std::wstring& text) {
  return std::filesystem::path(text).string();
}

ModelTable table(std::wstring name, int fieldCount, int recordCount) {
  ModelTable result{std::move(name), {}, {}};
  for (int field = 0; field < fieldCount; ++field) result.fields.push_back(L"f" + std::to_wstring(field));
  for (int record = 1; record <= recordCount; ++record) {
    const std::wstring number = std::to_wstring(record);
    result.records.push_back(
        std::make_shared<ModelRecord>(ModelRecord{number, fieldCount > 1 ? L"r" + number : L""}));
  }
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
                (field == 1 || queries ? " Text" : " Integer");
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

Pages::Pages(const std::filesystem::path& folder) {
  ModelTable queries{kModelQueryTable, {L"QueryName", L"SQL"}, {}};
  for (const auto& [name, sql] : {std::pair{L"big", kBig}, {L"read only", kReadOnly}, {L"wrong", kWrong}})
    queries.records.push_back(std::make_shared<ModelRecord>(ModelRecord{name, sql}));
  kept_.push_back(
      {folder / L"many.cdb", {table(L"Wide", 11, 6), table(L"One", 2, 1), table(L"Empty", 3, 0), queries}});
  kept_.push_back({folder / L"plain.cdb", {table(L"Solo", 5, 3)}});
  kept_.push_back({folder / L"bare.cdb", {}});
  for (const ModelDatabase& database : kept_) {
    write(database);
    std::filesystem::copy_file(database.path, database.path + L".kept");
  }
}

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

bool Pages::agrees() {
  dispatchPosted();
  const bool panelUp = pagewindow::isPanelUp();
  if (panelUp != panelUp_ || !model.isFormPageKnown()) model.formShows(pagewindow::formPage());
  panelUp_ = panelUp;
  const Facts expected = model.facts(panelUp);
  const Facts shown = pagewindow::facts();
  changed_ = shown != shown_;
  shown_ = shown;
  if (expected == shown) return true;
  std::ostringstream text;
  text << trail << ":";
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
