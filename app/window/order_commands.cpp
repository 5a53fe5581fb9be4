#include "app/window/order_commands.h"

#include <algorithm>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>

#include "app/window/help.h"
#include "app/window/program_state.h"
#include "base/showable_text.h"
#include "dialogs/query/query_dialog.h"
#include "dialogs/small/ask_text.h"
#include "owners/handles.h"
#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/parts/arranger.h"
#include "views/shared/access_marks.h"

namespace {

// The choices of a column's menu. A popup that is left returns 0.
enum Choice : UINT {
  kNothing,
  kAscending,
  kDescending,
  kThenAscending,
  kThenDescending,
  kOnlyValue,
  kContaining,
  kEmpty,
  kNotEmpty,
  kAnyContaining,
  kClear,
  kKeep,
  kCalculate,
};

constexpr std::size_t kMostNameCount = 40;
constexpr std::size_t kMostValueCount = 24;

/// As a menu shows it: what is underlined or set apart there is not.
std::wstring menuText(const wchar_t* text, std::size_t mostCount) {
  std::wstring plain = showableText(text);
  if (plain.size() > mostCount) plain = plain.substr(0, mostCount) + L"...";
  std::replace_if(
      plain.begin(), plain.end(), [](wchar_t unit) { return unit < L' '; }, L' ');
  return withPlainAmpersands(plain);
}

void append(HMENU menu, Choice choice, const std::wstring& text, bool isOffered, bool isChosen = false) {
  const UINT flags =
      MF_STRING | (isOffered ? MF_ENABLED : MF_GRAYED) | (isChosen ? MF_CHECKED : MF_UNCHECKED);
  AppendMenuW(menu, flags, choice, text.c_str());
}

UINT choiceOf(const UniqueMenu& menu, POINT where) {
  return HandheldChooseFromMenu(menu.get(), where, mainWindow);
}

bool canArrange() {
  return theDocument && !theDocument->isBusy() && theDocument->isRecordsetOpen() &&
         currentPage == kListPageIndex;
}

/// Of the condition that the field is what it is in the chosen row; none where there is no such row.
std::optional<Arrangement::Condition> chosenValue(std::uint32_t field) {
  Arrangement::Condition condition;
  if (!theDocument->arranger().readChosenValue(field, condition)) return std::nullopt;
  return condition;
}

std::wstring valueText(const std::optional<Arrangement::Condition>& value) {
  using Test = Arrangement::Test;
  if (value && value->test == Test::equal)
    return L"&Only '" + menuText(value->shown.c_str(), kMostValueCount) + L"'";
  if (value && value->test == Test::isTrue) return L"&Only 'True'";
  if (value && value->test == Test::isFalse) return L"&Only 'False'";
  return L"&Only this value";
}

/// A column's menu and what it is about.
class ColumnMenu {
 public:
  explicit ColumnMenu(std::uint32_t field)
      : field_(field), name_(theDocument->fieldName(field).text()), value_(chosenValue(field)) {}

  void show(POINT where) {
    const UniqueMenu menu = make();
    if (!menu) return;
    const UINT choice = choiceOf(menu, where);
    // While it was open another program may have changed the table, or the page.
    if (choice != kNothing && canArrange() && name_ == theDocument->fieldName(field_).text()) run(choice);
  }

 private:
  UniqueMenu make() const;
  void run(UINT choice) const;
  void order(bool isThen, bool isDescending) const;
  void require(Arrangement::Test test) const;
  void requireText() const;
  bool isOrdered(std::size_t place, bool isDescending) const {
    const auto& orders = theDocument->arranger().present().orders();
    return place < orders.size() && orders[place].field == name_ &&
           orders[place].isDescending == isDescending;
  }
  bool isRequired(Arrangement::Test test) const {
    const Arrangement::Condition* condition = theDocument->arranger().present().conditionOf(name_);
    return condition && condition->test == test;
  }

  std::uint32_t field_;
  std::wstring name_;
  std::optional<Arrangement::Condition> value_;
};

UniqueMenu ColumnMenu::make() const {
  using Test = Arrangement::Test;
  UniqueMenu made(CreatePopupMenu());
  const HMENU menu = made.get();
  if (!menu) return made;
  const Arrangement& arrangement = theDocument->arranger().present();
  const bool isSecond = !arrangement.orders().empty() && arrangement.orders().front().field != name_;
  const bool isValue = value_ && value_->test != Test::empty;
  append(menu, kAscending, L"&Ascending", true, isOrdered(0, false));
  append(menu, kDescending, L"&Descending", true, isOrdered(0, true));
  append(menu, kThenAscending, L"&Then ascending", isSecond, isOrdered(1, false));
  append(menu, kThenDescending, L"T&hen descending", isSecond, isOrdered(1, true));
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  const Arrangement::Condition* condition = arrangement.conditionOf(name_);
  append(menu, kOnlyValue, valueText(value_), isValue, isValue && condition && *condition == *value_);
  append(menu, kContaining, L"&Containing...", theDocument->arranger().canContainText(field_),
         isRequired(Test::containing));
  append(menu, kEmpty, L"&Empty", true, isRequired(Test::empty));
  append(menu, kNotEmpty, L"&Not empty", true, isRequired(Test::notEmpty));
  append(menu, kAnyContaining, L"An&y column containing...", true);
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  append(menu, kClear, L"&Show all records", !arrangement.isEmpty());
  append(menu, kKeep, L"&Keep as query...", !arrangement.isEmpty());
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  append(menu, kCalculate, L"Ca&lculate", true);
  return made;
}

void ColumnMenu::run(UINT choice) const {
  switch (choice) {
    case kAscending:
    case kDescending:
      return order(false, choice == kDescending);
    case kThenAscending:
    case kThenDescending:
      return order(true, choice == kThenDescending);
    case kOnlyValue: {
      // Where the value was read its field has the name of the arrangement.
      Arrangement arrangement = theDocument->arranger().present();
      arrangement.require(*value_);
      theDocument->arranger().arrange(std::move(arrangement));
      return;
    }
    case kContaining:
      return requireText();
    case kEmpty:
      return require(Arrangement::Test::empty);
    case kNotEmpty:
      return require(Arrangement::Test::notEmpty);
    case kAnyContaining:
      return filterAllColumns();
    case kClear:
      return clearArrangement();
    case kKeep:
      return keepArrangementAsQuery();
    case kCalculate:
      return theDocument->arranger().calculate(field_);
    default:
      return;
  }
}

void ColumnMenu::order(bool isThen, bool isDescending) const {
  std::optional<std::wstring> name = theDocument->arranger().arrangedName(field_);
  if (!name) return;
  Arrangement arrangement = theDocument->arranger().present();
  Arrangement::Order order{std::move(*name), isDescending, theDocument->arranger().lettersOf(field_)};
  if (isThen) {
    arrangement.thenBy(std::move(order));
  } else {
    arrangement.orderBy(std::move(order));
  }
  theDocument->arranger().arrange(std::move(arrangement));
}

void ColumnMenu::require(Arrangement::Test test) const {
  Arrangement::Condition condition;
  condition.field = theDocument->arranger().arrangedName(field_);
  if (!condition.field) return;
  condition.test = test;
  Arrangement arrangement = theDocument->arranger().present();
  arrangement.require(std::move(condition));
  theDocument->arranger().arrange(std::move(arrangement));
}

/// Asks until there is a text or the user cancels.
bool askText(const std::wstring& label, std::wstring& text) {
  AskTextDialog dialog;
  dialog.title = L"Containing";
  dialog.label = label;
  dialog.text = text;
  if (dialog.run(mainWindow) != IDOK) return false;
  text = dialog.text;
  return canArrange();
}

void ColumnMenu::requireText() const {
  Arrangement::Condition condition;
  condition.field = theDocument->arranger().arrangedName(field_);
  if (!condition.field) return;
  Arrangement arrangement = theDocument->arranger().present();
  const Arrangement::Condition* former = arrangement.conditionOf(*condition.field);
  condition.test = Arrangement::Test::containing;
  if (former && former->test == condition.test) condition.value = former->value;
  if (!askText(L"&Text in '" + menuText(name_.c_str(), kMostNameCount) + L"':", condition.value)) return;
  arrangement.require(std::move(condition));
  theDocument->arranger().arrange(std::move(arrangement));
}

}  // namespace

void showColumnMenu(std::uint32_t field, POINT where) {
  if (canArrange() && field < theDocument->fieldCount()) ColumnMenu(field).show(where);
}

void chooseColumnMenu() {
  if (!canArrange()) return;
  const UniqueMenu menu(CreatePopupMenu());
  if (!menu) return;
  for (std::uint32_t field = 0; field < theDocument->fieldCount(); ++field) {
    AppendMenuW(menu.get(), MF_STRING, field + 1,
                menuText(theDocument->fieldName(field).text(), kMostNameCount).c_str());
  }
  const POINT where = theRecordListView.columnMenuPlace();
  const UINT chosen = choiceOf(menu, where);
  if (chosen != 0) showColumnMenu(chosen - 1, where);
}

void filterAllColumns() {
  if (!canArrange()) return;
  Arrangement arrangement = theDocument->arranger().present();
  Arrangement::Condition condition;
  condition.test = Arrangement::Test::containing;
  for (const Arrangement::Condition& former : arrangement.conditions()) {
    if (!former.field) condition.value = former.value;
  }
  if (!askText(L"&Text in any column:", condition.value)) return;
  arrangement.require(std::move(condition));
  theDocument->arranger().arrange(std::move(arrangement));
}

void clearArrangement() {
  if (theDocument) theDocument->arranger().arrange({});
}

void keepArrangementAsQuery() {
  if (!canArrange()) return;
  QueryDialog dialog({theDocument->tableNames(),
                      [](const String& sql, NameList& names) { theDocument->listFieldNames(sql, names); },
                      [](const String& sql, String& reason) {
                        const Outcome tried = theDocument->tryQuery(sql);
                        if (!tried) reason = tried.reason();
                        return static_cast<bool>(tried);
                      },
                      showHelp});
  dialog.sql = theDocument->sqlText();
  bool isStored = false;
  while (!isStored && dialog.run(mainWindow) == IDOK) {
    isStored = theDocument->keepQuery({dialog.name, dialog.sql});
    SHSipPreference(mainWindow, SIP_DOWN);
  }
}
