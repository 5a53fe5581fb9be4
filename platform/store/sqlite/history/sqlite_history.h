#pragma once

#include <optional>
#include <vector>

#include "platform/store/rows/change_history.h"
#include "platform/store/sqlite/connection/change_listener.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/history/change_recorder.h"
#include "platform/store/sqlite/history/history_step.h"
#include "platform/store/sqlite/history/recorded_table.h"
#include "platform/store/sqlite/history/step_recording.h"

namespace store {

/// What was changed through one connection, as changesets of SQLite's session extension.
class SqliteHistory : public ChangeHistory, private ChangeListener {
 public:
  /// `connection` outlives it.
  explicit SqliteHistory(SqliteConnection& connection);
  ~SqliteHistory() override;
  SqliteHistory(const SqliteHistory&) = delete;
  SqliteHistory& operator=(const SqliteHistory&) = delete;

  void keep(std::size_t mostBytes) override;
  const HistoryStep* next(Way way) const override;
  Status take(Way way) override;
  const std::optional<RecordAddress>& taken() const override { return taken_; }
  bool hasKeptRows() const override { return hasKeptRows_; }

 private:
  using Steps = std::vector<RecordedStep>;

  void changeBegins() override;
  Status changeIsComplete(const ChangeNote& note) override;
  void changeIsOver(bool isAcknowledged) noexcept override;

  void forget();
  void makeRoom();
  Status takeStep(Way way, RecordedStep& step);

  SqliteConnection& connection_;
  std::size_t mostBytes_ = 0;
  ChangeRecorder recorder_;
  RecordedTables tables_;
  // Statements that are made without one don't tell of each row that goes. Null when there was no memory, and
  // then nothing is kept.
  UniqueSession asleep_;
  Steps done_;
  Steps undone_;
  Recording recording_ = Recording::nothing;  // of the present transaction
  std::optional<RecordAddress> taken_;
  bool hasKeptRows_ = false;  // by the step that was taken last
};

}  // namespace store
