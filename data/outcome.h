#pragma once

#include <cstdint>
#include <utility>

#include "base/string.h"

/// What an operation came to: done, or why not. Contextually true when it is done.
class [[nodiscard]] Outcome {
 public:
  /// What kept it from being done, as far as callers tell one reason from another.
  enum class Cause : std::uint8_t {
    none,              ///< it is done
    recordGone,        ///< there is no such record any more, or none is current
    changedElsewhere,  ///< another program has changed the record since it was read
    structureChanged,  ///< the tables became others since the recordset was opened: it is to be opened anew
    notNow,            ///< another program holds the file, or it would take more than there may be
    stopped,           ///< the user stopped it
    passwordWanted,    ///< a server wants a password, or another one than it was given
    other,
    notFitting,  ///< what was asked for does not fit the tables as they are: it would fail again
  };

  /// Done.
  Outcome() = default;
  /// `reason` is a sentence for the user, in the store's words where it gave any.
  static Outcome failure(String reason, Cause cause = Cause::other) {
    Outcome outcome;
    outcome.cause_ = cause;
    outcome.reason_ = std::move(reason);
    return outcome;
  }

  explicit operator bool() const noexcept { return cause_ == Cause::none; }
  Cause cause() const noexcept { return cause_; }
  /// Empty when it is done, and where the store gave no reason.
  const String& reason() const noexcept { return reason_; }

 private:
  Cause cause_ = Cause::none;
  String reason_;
};
