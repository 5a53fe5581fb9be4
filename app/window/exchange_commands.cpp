#include "app/window/exchange_commands.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/window/program_state.h"
#include "dialogs/exchange/import_dialog.h"
#include "dialogs/exchange/import_result.h"
#include "owners/handles.h"
#include "records/count_text.h"
#include "views/shared/clipboard_text.h"

namespace {

constexpr std::array<std::wstring_view, 6> kImportable = {L".csv",  L".tsv",   L".txt",
                                                          L".json", L".jsonl", L".ndjson"};

void remark(const std::wstring& text) {
  thePrompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str(), kPromptCaption);
}

void refuse(const std::wstring& text) {
  thePrompts.tell(PromptOwner::mainWindow, Notice::refusal, text.c_str(), kPromptCaption);
}

std::wstring storedText(const String& table, const ImportCounts& counts) {
  std::wstring text =
      std::wstring(L"Table '") + table.text() + L"': " + countOfRecords(counts.added) + L" added";
  if (counts.replaced != 0) text += L", " + std::to_wstring(counts.replaced) + L" replaced";
  if (counts.leftOut != 0) text += L", " + std::to_wstring(counts.leftOut) + L" left out";
  return text + L".";
}

void tellNotCopied(const String& reason) {
  const std::wstring text = std::wstring(L"The row could not be copied.\n") + reason.text();
  refuse(text);
}

/// A text in a file of its own, in UTF-16, which keeps all that the clipboard may hold, as long as this
/// lives.
class TemporaryText {
 public:
  explicit TemporaryText(const std::wstring& text) {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0) return;
    if (GetTempFileNameW(folder.data(), L"qvn", 0, name.data()) == 0) return;
    path_ = name.data();
    const UniqueFile file(CreateFileW(path_.text(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_TEMPORARY, nullptr));
    const std::wstring marked = L'\xFEFF' + text;
    const std::size_t length = marked.size() * sizeof(wchar_t);
    DWORD written = 0;
    isWritten_ = file && length <= MAXDWORD &&
                 WriteFile(file.get(), marked.data(), static_cast<DWORD>(length), &written, nullptr) &&
                 written == length;
  }
  ~TemporaryText() {
    if (!path_.isEmpty()) DeleteFileW(path_.text());
  }
  TemporaryText(const TemporaryText&) = delete;
  TemporaryText& operator=(const TemporaryText&) = delete;

  bool isWritten() const { return isWritten_; }
  const String& path() const { return path_; }

 private:
  String path_;
  bool isWritten_ = false;
};

/// No line ends but at the end and in quotes, which only a field that begins with one has.
bool isOneRow(std::wstring_view text) {
  const std::wstring_view separators = text.find(L'\t') != text.npos ? L"\t" : L",;|";
  bool isQuoted = false;
  bool mayOpen = true;  // a field begins here, or a quote has just ended, which a second one makes a sign
  for (std::size_t place = 0; place < text.size(); ++place) {
    const wchar_t character = text[place];
    const bool closes = isQuoted && character == L'"';
    if (!isQuoted && (character == L'\r' || character == L'\n')) {
      return text.find_first_not_of(L"\r\n", place) == text.npos;
    }
    isQuoted = !closes && (isQuoted || (mayOpen && character == L'"'));
    mayOpen = closes || separators.find(character) != separators.npos;
  }
  return true;
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
  ImportResultDialog(text, file.rejected(), counts.leftOut,
                     {[] { return thePrompts.chooseFile(FileChoice::rejects); },
                      [&file](const String& path) { return file.saveRejected(path); }})
      .run(mainWindow);
  return keepsGood;
}

/// Rows of another program have tabs between the fields, whatever else their texts hold, and one row alone is
/// a record: names of columns with nothing below are of no use.
void choosePasted(ImportFile& file, std::wstring_view text) {
  file.setTable(L"Pasted");
  if (text.find(L'\t') != text.npos) file.setDelimiter(L"\t");
  if (isOneRow(text)) file.setHeader(false);
}

/// `choose` settles beforehand what is known of the file.
void importOpened(const String& path, const std::function<void(ImportFile& file)>& choose) {
  if (!theDocument->isDatabaseOpen()) {
    const std::wstring text =
        std::wstring(L"File ") + path.text() +
        L" can be imported into an open database.\nPlease open one or make a new one, and "
        L"choose Import... in the menu.";
    refuse(text);
    return;
  }
  const std::unique_ptr<ImportFile> file = theDocument->openImport(path);
  if (!file) return;
  choose(*file);
  ImportDialog dialog(*file, theDocument->tableNames());
  bool isDone = false;
  // What was not stored is shown again, so that nothing that was chosen is lost.
  while (!isDone && dialog.run(mainWindow) == IDOK) {
    ImportCounts counts;
    isDone = theDocument->runImport(*file, dialog.keepsGoodRecords, counts) &&
             tellImported(*file, dialog.keepsGoodRecords, counts);
  }
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
  importOpened(path, [](ImportFile&) {});
}

void copyChosenRow() {
  std::wstring text;
  if (const Outcome read = theDocument->readChosenRow(text); !read) {
    tellNotCopied(read.reason());
  } else if (!text.empty() && !setClipboardText(mainWindow, text)) {
    tellNotCopied(L"Another program is using the clipboard.");
  }
}

void importPastedText() {
  const std::wstring text = clipboardText(mainWindow);
  if (text.empty()) {
    refuse(L"The clipboard holds no text.");
    return;
  }
  const TemporaryText file(text);
  if (file.isWritten()) {
    importOpened(file.path(), [&text](ImportFile& pasted) { choosePasted(pasted, text); });
  } else {
    refuse(L"The text could not be written into a temporary file.");
  }
}

bool isImportable(const String& path) {
  String lower = path;
  lower.toLowerCase();
  const std::wstring_view text = lower.text();
  return std::any_of(kImportable.begin(), kImportable.end(),
                     [text](std::wstring_view ending) { return text.ends_with(ending); });
}
