#include "tests/ui/program/states/page_window.h"

#include <commctrl.h>
#include <commdlg.h>

#include <array>
#include <cwchar>
#include <optional>
#include <utility>

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "dialogs/find/find_dialog_ids.h"
#include "dialogs/small/go_to_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/support/import_swap.h"
#include "tests/ui/support/late_swap.h"
#include "tests/ui/support/window_reading.h"
#include "views/dialog/input_panel_hold.h"
#include "views/form/form_ids.h"
#include "views/names/name_list_view.h"
#include "views/shared/list_view.h"

// The import that the program calls through, as the compiler names it.
extern "C" decltype(&MessageBoxW) __imp_MessageBoxW;  // NOLINT(bugprone-reserved-identifier)

namespace {

// ---- Calls on the program's thread

constexpr UINT kCallMessage = WM_APP + 0x77;
WNDPROC formerProcedure = nullptr;

LRESULT CALLBACK callProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kCallMessage) {
    (*reinterpret_cast<const std::function<void()>*>(lParam))();
    return 0;
  }
  return CallWindowProcW(formerProcedure, window, message, wParam, lParam);
}

// ---- Answers

std::optional<ImportSwap<decltype(&MessageBoxW)>> boxSwap;
int boxAnswer = IDOK;
std::optional<std::wstring> chosenFile;
std::vector<std::wstring> boxes;

int WINAPI answerBox(HWND, const wchar_t* text, const wchar_t*, UINT) {
  boxes.emplace_back(text);
  return boxAnswer;
}

BOOL WINAPI answerFile(OPENFILENAMEW* question) {
  if (!chosenFile || chosenFile->size() >= question->nMaxFile) return FALSE;
  std::wcscpy(question->lpstrFile, chosenFile->c_str());
  return TRUE;
}

// ---- Reading

struct Names {
  HWND list[2] = {};  // of the tables, of the queries
};

/// In the order of their creation, which is not that of the windows: the second one lies before the first.
Names nameLists() {
  Names names;
  for (HWND child = GetWindow(mainWindow, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetDlgCtrlID(child) != NameListView::kControlId) continue;
    names.list[0] = child;
    if (!names.list[1]) names.list[1] = child;
  }
  return names;
}

HWND shownNames() {
  return nameLists().list[currentPage == kTables ? 0 : 1];
}

std::wstring itemTexts(HWND list) {
  std::wstring texts;
  for (int i = 0; i < listview::itemCount(list); ++i) {
    wchar_t text[100] = L"";
    listview::itemText(list, i, text, ARRAYSIZE(text));
    texts += (i == 0 ? L"" : L", ") + std::wstring(text);
  }
  return texts;
}

int selectedItem(HWND list) {
  return listview::nextItem(list, listview::kFirstOfAll, LVNI_SELECTED);
}

HWND grid() {
  return GetDlgItem(tabControl, RecordListView::kListId);
}

void addMenuFacts(const char* name, HMENU menu, Facts& facts) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    if (const HMENU below = GetSubMenu(menu, i)) {
      addMenuFacts(name, below, facts);
      continue;
    }
    const UINT id = GetMenuItemID(menu, i);
    if (id == 0) continue;
    const bool grey = (GetMenuState(menu, id, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED)) != 0;
    facts[std::string("menu ") + name + " " + std::to_string(id)] = grey ? L"grey" : L"on";
  }
}

void addButtonFacts(HWND band, Facts& facts) {
  if (!band || classOf(band) != TOOLBARCLASSNAMEW) return;
  const auto count = static_cast<int>(SendMessageW(band, TB_BUTTONCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    TBBUTTON button{};
    SendMessageW(band, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button));
    facts["button " + std::to_string(button.idCommand)] =
        (button.fsState & TBSTATE_ENABLED) != 0 ? L"on" : L"grey";
  }
}

void addBarFacts(Facts& facts) {
  const MenuBar& bar = theCommandBar->menuBar();
  constexpr std::pair<const char*, PopupMenu> kPopups[] = {{"file", PopupMenu::file},
                                                           {"edit", PopupMenu::edit},
                                                           {"record", PopupMenu::record},
                                                           {"tables", PopupMenu::tables},
                                                           {"queries", PopupMenu::queries}};
  int popups = 0;
  for (const auto& [name, menu] : kPopups) {
    if (!bar.popup(menu)) continue;
    ++popups;
    addMenuFacts(name, bar.popup(menu), facts);
  }
  const auto buttons = static_cast<int>(SendMessageW(bar.window(), TB_BUTTONCOUNT, 0, 0));
  facts["menu bar buttons"] = std::to_wstring(buttons - popups);
  addButtonFacts(theCommandBar->pageBars().firstBand(), facts);
  addButtonFacts(theCommandBar->pageBars().secondBand(), facts);
  if (const HWND box = theCommandBar->pageBars().positionBox()) facts["position"] = textOf(box);
}

void addFormFacts(Facts& facts) {
  int editors = 0;
  int visible = 0;
  for (HWND child = GetWindow(formWrapperWindow, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetDlgCtrlID(child) < kFirstTextEditorId) continue;
    ++editors;
    if (isShown(child)) ++visible;
  }
  facts["editors"] = std::to_wstring(editors);
  facts["visible editors"] = std::to_wstring(visible);
  facts["form page"] = std::to_wstring(theFormView.pageIndex());
  if (!theDocument->isRecordsetOpen() || recordCount == 0) return;
  facts["first editor"] = textOf(GetDlgItem(formWrapperWindow, kFirstTextEditorId));
  const HWND second = GetDlgItem(formWrapperWindow, kFirstTextEditorId + 1);
  facts["second editor"] = second ? textOf(second) : L"";
}

void addGridFacts(Facts& facts) {
  const HWND list = grid();
  facts["rows"] = std::to_wstring(listview::itemCount(list));
  const int selected = selectedItem(list);
  facts["selected row"] = std::to_wstring(selected);
  wchar_t text[100] = L"";
  if (selected >= 0) listview::itemText(list, selected, text, ARRAYSIZE(text));
  facts["first cell"] = text;
  const HWND header = listview::header(list);
  std::wstring titles;
  for (int i = 0; i < static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)); ++i) {
    wchar_t title[100] = L"";
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = title;
    column.cchTextMax = ARRAYSIZE(title);
    SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    titles += (i == 0 ? L"" : L", ") + std::wstring(title);
  }
  facts["titles"] = titles;
}

}  // namespace

ThreadCaller::ThreadCaller(HWND window) : window_(window) {
  formerProcedure = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(callProcedure));
}

ThreadCaller::~ThreadCaller() {
  if (IsWindow(window_))
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(formerProcedure));
}

void ThreadCaller::call(const std::function<void()>& what) const {
  SendMessageW(window_, kCallMessage, 0, reinterpret_cast<LPARAM>(&what));
}

PromptAnswers::PromptAnswers() {
  boxSwap.emplace(__imp_MessageBoxW, &answerBox);
  replaceLateFunction("GetOpenFileNameW", answerFile);
  replaceLateFunction("GetSaveFileNameW", answerFile);
}

PromptAnswers::~PromptAnswers() {
  boxSwap.reset();
}

void PromptAnswers::setBox(int answer) {
  boxAnswer = answer;
}

void PromptAnswers::setFile(std::optional<std::wstring> path) {
  chosenFile = std::move(path);
}

std::vector<std::wstring> PromptAnswers::takeBoxes() {
  return std::exchange(boxes, {});
}

namespace pagewindow {

Facts facts() {
  Facts facts;
  addBarFacts(facts);
  facts["panel"] = isInputPanelUp() ? L"up" : L"down";
  facts["page"] = std::to_wstring(currentPage);
  facts["tab"] = std::to_wstring(selectedTab());
  const Names names = nameLists();
  std::wstring shown;
  const std::pair<const wchar_t*, HWND> kPages[] = {{L"tables", names.list[0]},
                                                    {L"form", formWrapperWindow},
                                                    {L"list", grid()},
                                                    {L"queries", names.list[1]}};
  for (const auto& [name, window] : kPages) {
    if (isShown(window)) shown += (shown.empty() ? L"" : L", ") + std::wstring(name);
  }
  facts["shown"] = shown;
  facts["database"] = theDocument->databasePath().text();
  facts["table"] = theDocument->tableName().text();
  facts["query"] = theDocument->queryName().text();
  facts["statement"] = theDocument->sqlText().text();
  facts["recordset"] = theDocument->isRecordsetOpen() ? L"open" : L"closed";
  const bool open = theDocument->isDatabaseOpen();
  if (!open || currentPage == kTables) {
    facts["tables"] = itemTexts(names.list[0]);
    facts["selected table"] = std::to_wstring(selectedItem(names.list[0]));
  }
  if (!open || currentPage == kQueries) {
    facts["queries"] = itemTexts(names.list[1]);
    facts["selected query"] = std::to_wstring(selectedItem(names.list[1]));
  }
  if (open && currentPage == kForm) addFormFacts(facts);
  if (open && currentPage == kList && theDocument->isRecordsetOpen()) addGridFacts(facts);
  return facts;
}

void command(int id) {
  SendMessageW(mainWindow, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

void clickTab(int page) {
  RECT place{};
  SendMessageW(tabControl, TCM_GETITEMRECT, static_cast<WPARAM>(page), reinterpret_cast<LPARAM>(&place));
  const LPARAM where = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  SendMessageW(tabControl, WM_LBUTTONDOWN, MK_LBUTTON, where);
  SendMessageW(tabControl, WM_LBUTTONUP, 0, where);
}

void tapName(int index) {
  const HWND list = shownNames();
  listview::setItemState(list, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  NMITEMACTIVATE click{};
  click.hdr = {list, static_cast<UINT_PTR>(NameListView::kControlId), NM_CLICK};
  click.iItem = index;
  SendMessageW(mainWindow, WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
}

ChosenName chosenName() {
  const HWND list = shownNames();
  const int selected = selectedItem(list);
  return {selected, selected >= 0 && listview::nextItem(list, selected - 1, LVNI_FOCUSED) == selected};
}

void pressKeyInNames(WORD key) {
  SendMessageW(shownNames(), WM_KEYDOWN, key, 1);
}

void tapRow(int row) {
  LVITEMW item{};
  item.state = LVIS_SELECTED | LVIS_FOCUSED;
  item.stateMask = item.state;
  listview::ensureVisible(grid(), row);
  SendMessageW(grid(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void pressKeyInGrid(WORD key) {
  SendMessageW(grid(), WM_KEYDOWN, key, 1);
}

void typeIntoSecondEditor(wchar_t character) {
  const HWND editor = GetDlgItem(formWrapperWindow, kFirstTextEditorId + 1);
  SetFocus(editor);
  SendMessageW(editor, EM_SETSEL, 100, 100);
  SendMessageW(editor, WM_CHAR, character, 1);
}

void pressPanelButton() {
  HWND button = nullptr;
  EnumChildWindows(
      mainWindow,
      [](HWND child, LPARAM found) -> BOOL {
        if (classOf(child) != L"Pocket Shell Panel Button") return TRUE;
        *reinterpret_cast<HWND*>(found) = child;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&button));
  SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, 0);
}

void findInAllFields(HWND dialog, const wchar_t* text) {
  SetDlgItemTextW(dialog, IDC_FIND_TEXT, text);
  if (IsDlgButtonChecked(dialog, IDC_FIND_ALL_FIELDS) != BST_CHECKED)
    SendDlgItemMessageW(dialog, IDC_FIND_ALL_FIELDS, BM_CLICK, 0, 0);
  PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

void enterNumber(HWND dialog, int number) {
  SetDlgItemInt(dialog, IDC_GO_TO_NUMBER, static_cast<UINT>(number), FALSE);
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  // After a number that was refused.
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

}  // namespace pagewindow
