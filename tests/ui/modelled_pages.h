#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "resources/command_ids.h"
#include "tests/ui/page_model.h"
#include "tests/ui/page_window.h"

/// Statements of saved queries.
inline constexpr wchar_t kBig[] = L"Select * from [Wide] where f0 > 3";
inline constexpr wchar_t kReadOnly[] = L"Select * from [Wide] union all select * from [Wide] where 0";
inline constexpr wchar_t kWrong[] = L"Select nothing";

/// The program with the model beside it. All of it is used on the program's thread.
class Pages {
 public:
  /// Makes three databases in the folder.
  explicit Pages(const std::filesystem::path& folder);

  static constexpr std::size_t kMany = 0;
  static constexpr std::size_t kPlain = 1;
  static constexpr std::size_t kBare = 2;

  PageModel model{{{kBig, L"Wide", 3, false}, {kReadOnly, L"Wide", -1, true}, {kWrong, L"", -1, false}}};
  std::string trail;
  std::string failure;

  /// Opens a database as it was made at first, unless it is open and so already.
  void open(std::size_t which);
  void openAgain() {
    PromptAnswers::setFile(used_.path);
    pagewindow::command(ID_DATABASE_OPEN);
    model.open(&used_);
  }
  void showPage(int page) {
    pagewindow::clickTab(page);
    model.tapTab(page);
  }
  void tapName(int index) {
    if (index < 0 || index >= model.nameCount()) return;
    pagewindow::tapName(index);
    model.tapName(index);
  }
  void useTable(int index) {
    showPage(kTables);
    tapName(index);
  }
  void useQuery(int index) {
    showPage(kQueries);
    tapName(index);
  }
  void type() {
    if (!model.canType()) return;
    pagewindow::typeIntoSecondEditor(L'x');
    model.type(L'x');
  }
  void newRecord() {
    if (model.isRecordsetOpen() && !model.canChangeRecords()) return;
    pagewindow::command(ID_RECORD_NEW);
    model.newRecord();
  }

  /// Whether the last comparison has seen something else than the one before.
  bool hasChanged() const { return changed_; }
  /// Compares. What the form makes of a panel that moved is its own to say, and then has to be so.
  bool agrees();

 private:
  std::filesystem::path folder_;
  std::vector<ModelDatabase> kept_;
  ModelDatabase used_;
  bool panelUp_ = false;
  Facts shown_;
  bool changed_ = true;
};
