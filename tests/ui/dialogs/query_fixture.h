#pragma once

#include <map>
#include <new>
#include <string>
#include <vector>

#include "dialogs/query/query_dialog.h"
#include "gmock/gmock.h"
#include "tests/ui/support/dialog_fixture.h"
#include "tests/ui/support/window_reading.h"

/// The dialog of a query over tables of the test, whose fields and whose answers the test sets.
namespace querytest {

inline constexpr int kCheck = 3;
inline constexpr int kFilter = 4;
inline constexpr int kInsertField = 1028;
inline constexpr int kName = 1049;
inline constexpr int kSql = 1050;
inline constexpr int kFields = 1054;
inline constexpr int kTables = 1055;
inline constexpr int kInsertTable = 1057;
inline constexpr int kHelp = 1071;
inline constexpr int kLabel = -1;

inline const std::wstring kHostile = L"100% 'a' \"b\" [c] %s\t\x5E9\x5DC\x5D5\x5DD \xD83D\xDE00";

class QueryDialogTest : public DialogTest {
 protected:
  QueryDialogTest() {
    for (const wchar_t* const name : {L"Loans", L"authors", L"Books"}) tables.append(name);
    fields[L"Select * from [authors]"] = {L"name", L"born", L"Died"};
    fields[L"Select * from [Books]"] = {L"title"};
  }

  INT_PTR show(const Step& step) {
    return inDialog([&] { return dialog.run(frame()); }, step);
  }

  void chooseTable(HWND window, const wchar_t* name) {
    SendDlgItemMessageW(window, kTables, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(name));
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(kTables, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(window, kTables)));
  }

  static ControlPlace sqlPlace(HWND window) { return placeOf(GetDlgItem(window, kSql)); }

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes): the tests set and read them
  bool returnsRecords = true;
  const wchar_t* reason = L"";       // why not
  std::vector<std::wstring> asked;   // of which statements it was asked whether they return records
  std::vector<std::wstring> listed;  // of which statements the fields were asked for
  std::vector<std::wstring> helpTopics;
  bool outOfMemory = false;

  NameList tables;
  std::map<std::wstring, std::vector<std::wstring>> fields;
  QueryDialog dialog{{tables,
                      [this](const String& sql, NameList& names) {
                        if (outOfMemory) throw std::bad_alloc();
                        listed.emplace_back(sql.text());
                        for (const std::wstring& each : fields[sql.text()]) names.append(each.c_str());
                      },
                      [this](const String& sql, String& why) {
                        if (outOfMemory) throw std::bad_alloc();
                        asked.emplace_back(sql.text());
                        why = reason;
                        return returnsRecords;
                      },
                      [this](const wchar_t* topic) { helpTopics.emplace_back(topic); }}};
  // NOLINTEND(misc-non-private-member-variables-in-classes)
};

}  // namespace querytest
