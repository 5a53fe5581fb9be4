#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/store/exchange/bytes/byte_sink.h"
#include "platform/store/rows/status.h"

namespace cdbtool {

/// What the user writes for the standard input or output where a file is meant.
inline constexpr std::string_view kStandardStream = "-";

/// How the program ends.
enum ExitCode : int { kDone = 0, kFailed = 1, kWrongUsage = 2, kRowsLeftOut = 3 };

/// Data goes to the standard output; what is said to a person goes to the standard error.
class Console {
 public:
  explicit Console(bool isQuiet);

  /// One line that tells what was done; nothing when the user wants quiet.
  void tell(const std::string& text);
  /// One line that tells what went wrong.
  static void complain(const std::string& text);

  /// Shows how far the work is, where a person can see it; `total` is 0 when that is unknown.
  void showProgress(std::string_view what, std::int64_t done, std::int64_t total);
  /// Takes that away again.
  void endProgress();

 private:
  bool isQuiet_;
  bool hasBar_;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point next_;
};

/// "1 value", "2 values".
std::string counted(std::int64_t count, const std::string& thing);
/// "1 record", "2 records".
std::string countOfRecords(std::int64_t count);

/// Complains about a failure and gives the exit code for it. A pipe that nobody reads any more is no failure
/// to be told.
int failed(const store::Status& status);

/// A failure to make a file, with what the user, who has not asked for that yet, can do when one is there
/// already.
store::Status withForceHint(const store::Status& status, bool replacesFiles);

/// The standard output.
class StandardOutput : public store::exchange::StreamSink {
 public:
  StandardOutput() : StreamSink(stdout) {}
  /// Whether all that was written has arrived.
  static store::Status finish();
};

}  // namespace cdbtool
