#pragma once

#include <optional>
#include <string>

#include "records/parts/document_part.h"

/// Changes that are taken back and done again, those of every record that was stored since the file was
/// opened, one by one, newest first. What is typed on the form is stored before; where that could not be
/// taken back it is taken off the form instead.
class RecordHistory : public DocumentPart {
 public:
  explicit RecordHistory(Document& document) : DocumentPart(document) {}

  /// Whether there is something to take back, and something taken back to be done again.
  struct Steps {
    bool back;
    bool again;
  };
  Steps steps() const;
  bool hasStep(HistoryWay way) const { return way == HistoryWay::back ? steps().back : steps().again; }
  /// What would be taken, in words.
  std::wstring text(HistoryWay way) const;
  /// Takes the next one and sees to it that its records are in use. What can't be done is told. Returns the
  /// page that has to show it, and showTaken() is then to be called on it; nothing when nothing was done.
  std::optional<ViewMode> take(HistoryWay way);
  /// Shows the record concerned.
  void showTaken();

 private:
  bool hasTyped() const;
  bool canTakeTypedBack() const;
  void takeTypedOff() const;
  RecordSnapshot readBefore() const;
  bool isTypedStep(const RecordSnapshot& before);
  bool isOfQueries(const HistoryStep& step) const;
  bool isOpenAsItIs(const HistoryStep& step) const;
  void openTaken(const HistoryStep& step);
  void reopenTaken(const String& table);
  void showHiddenTaken();
  void standAtTaken();

  bool takenHasRecord_ = false;  // the change that was taken last, one that is there
  bool formWasEmpty_ = false;    // when a change was taken back that it has to show
};
