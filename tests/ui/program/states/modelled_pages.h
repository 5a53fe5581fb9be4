#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/ui/program/states/page_model.h"

/// Statements of saved queries.
inline constexpr wchar_t kBig[] = L"Select * from [Wide] where f0 > 3";
inline constexpr wchar_t kReadOnly[] = L"Select * from [Wide] union all select * from [Wide] where 0";
inline constexpr wchar_t kWrong[] = L"Select nothing";

/// The program with the model beside it: what is done to the one is done to the other. All of it is used on
/// the program's thread.
class Pages {
 public:
  /// Makes the databases in this folder.
  explicit Pages(const std::filesystem::path& folder);

  /// The databases, and the tables and queries of the first.
  static constexpr std::size_t kMany = 0;
  static constexpr std::size_t kPlain = 1;
  static constexpr std::size_t kBare = 2;
  static constexpr int kWideTable = 0;
  static constexpr int kOneTable = 1;
  static constexpr int kEmptyTable = 2;
  static constexpr int kStrictTable = 3;
  static constexpr int kEmptyStrictTable = 4;
  static constexpr int kBigQuery = 0;
  static constexpr int kReadOnlyQuery = 1;
  static constexpr int kWrongQuery = 2;

  PageModel model;
  std::string trail;    ///< what was done
  std::string failure;  ///< what the last comparison found

  /// Opens a database as it was made at first, unless it is open and so already.
  void open(std::size_t which);
  /// Opens the one that was used last.
  void openAgain();
  void openNew();
  void showPage(int page);
  void tapName(int index);
  void pressKeyInNames(unsigned short key);
  void useTable(int index);
  void useQuery(int index);
  void type();
  void newRecord();
  void find(const wchar_t* text);
  void pressPanelButton();
  /// From here on the user discards what the store refuses, or goes on with it.
  void setDiscards(bool discards);

  std::filesystem::path file(const wchar_t* name) const { return folder_ / name; }
  /// Notes what the facts don't show, to be told by the next comparison.
  void expect(bool holds, const char* otherwise);
  /// Whether the last comparison has seen something else than the one before.
  bool hasChanged() const { return changed_; }
  /// Compares.
  bool agrees();

 private:
  std::filesystem::path folder_;
  std::vector<ModelDatabase> kept_;
  ModelDatabase used_;
  int madeCount_ = 0;
  std::string complaint_;
  Facts seen_;
  bool changed_ = true;
};
