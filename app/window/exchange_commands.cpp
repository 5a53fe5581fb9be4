#include "app/window/exchange_commands.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/window/program_state.h"
#include "dialogs/exchange/import_dialog.h"
#include "dialogs/exchange/import_result.h"

namespace {

constexpr std::array<std::wstring_view, 6> kImportable = {L".csv",  L".tsv",   L".txt",
                                                          L".json", L".jsonl", L".ndjson"};

void remark(const std::wstring& text) {
  thePrompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str(), kPromptCaption);
}

std::wstring countOfRecords(std::int64_t count) {
  return std::to_wstring(count) + (count == 1 ? L" record" : L" records");
}

std::wstring storedText(const String& table, const ImportCounts& counts) {
  std::wstring text =
      std::wstring(L"Table '") + table.text() + L"': " + countOfRecords(counts.added) + L" added";
  if (counts.replaced != 0) text += L", " + std::to_wstring(counts.replaced) + L" replaced";
  if (counts.leftOut != 0) text += L", " + std::to_wstring(counts.leftOut) + L" left out";
  return text + L".";
}

/// What came of an import. False when nothing was stored, and the user may want it otherwise.
bool tellImported(const ImportFile& file, bool keepsGood, const ImportCounts& counts) {
  if (counts.leftOut == 0) {
    remark(storedText(file.table(), counts));
    return true;
  }
  const std::wstring text =
      keepsGood ? storedText(file.table(), counts)
                : countOfRecords(counts.leftOut) + L" can't be taken, so nothing was imported.";
  ImportResultDialog(text, file.rejected(), counts.leftOut).run(mainWindow);
  return keepsGood;
}

}  // namespace

void exportToChosenFile() {
  theDocument->exportRecords();
}

void importChosenFile() {
  const std::optional<String> path = thePrompts.chooseFile(FileChoice::importFrom);
  if (path) importFile(*path);
}

void importFile(const String& path) {
  if (!theDocument->isDatabaseOpen()) {
    const std::wstring text =
        std::wstring(L"File ") + path.text() +
        L" can be imported into an open database.\nPlease open one or make a new one, and "
        L"choose Import... in the menu.";
    thePrompts.tell(PromptOwner::mainWindow, Notice::refusal, text.c_str(), kPromptCaption);
    return;
  }
  const std::unique_ptr<ImportFile> file = theDocument->openImport(path);
  if (!file) return;
  ImportDialog dialog(*file, theDocument->tableNames());
  bool isDone = false;
  // What was not stored is shown again, so that nothing that was chosen is lost.
  while (!isDone && dialog.run(mainWindow) == IDOK) {
    ImportCounts counts;
    isDone = theDocument->runImport(*file, dialog.keepsGoodRecords, counts) &&
             tellImported(*file, dialog.keepsGoodRecords, counts);
  }
}

bool isImportable(const String& path) {
  String lower = path;
  lower.toLowerCase();
  const std::wstring_view text = lower.text();
  return std::any_of(kImportable.begin(), kImportable.end(),
                     [text](std::wstring_view ending) { return text.ends_with(ending); });
}
