#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/ui/remote/possessions.h"
#include "tests/ui/support/ui_test.h"

/// The real program in a folder of its own, with a database of three tables, under whatever a random user
/// does: what is in front of him, whether it has taken what was posted, and what it holds.
class SoakedProgram : public UiTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  RunningProgram& program() { return *program_; }
  HWND main() const { return main_; }
  std::filesystem::path folder() const { return file("soak"); }
  std::filesystem::path path() const { return folder() / "soak.cdb"; }

  /// With the settings as they come; opens the database.
  void start();
  void makeTables() const;

  /// The dialog or message box that can be used now, else the main window.
  HWND front() const;
  std::string frontText() const;
  bool isFileDialog(HWND window) const;
  bool isMenuOpen() const;
  /// The visible ones, and the window itself as the last.
  std::vector<HWND> controlsOf(HWND window) const;
  /// And leaves the file dialog by its OK.
  void nameFile(HWND dialog, const std::filesystem::path& file);
  void cancelFile(HWND dialog);
  /// How many were left so.
  int fileDialogs() const { return fileDialogs_; }

  /// Or has ended.
  bool answers() const;
  /// Waits until the program has taken all that was posted until now, or has ended; false when it hangs.
  bool takesAll();
  void closeMenus() const;
  /// Until no dialog and no menu is open any more, and a database is.
  void comeToRest();
  /// With the same table shown on every page. None when the program has ended meanwhile.
  std::optional<Possessions> measure();
  /// Prints what the program itself has told of its end by a fault.
  void tellFault() const;

 private:
  bool send(HWND window, UINT message, DWORD_PTR* result) const;
  void openDatabase();

  std::filesystem::path former_;
  std::optional<RunningProgram> program_;
  HWND main_ = nullptr;
  bool isTabWide_ = true;
  int fileDialogs_ = 0;
};
