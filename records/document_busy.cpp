// What the user sees of an operation that takes its time, and how long he is kept waiting.
#include <algorithm>

#include "records/document.h"

namespace {

/// In all, for one thing that the user did, however many readings each find the file locked.
constexpr std::chrono::seconds kMostWaiting{5};

/// Between two questions of one wait at most; what lies further apart was spent with something else.
constexpr std::chrono::milliseconds kBetweenQuestions{200};

}  // namespace

bool Document::goesOn(BusyWith busy) {
  // What is painted meanwhile does without the database.
  if (isAsked_) return true;
  if (!isTold_) pages_.prompts.tellWhenOver();
  isTold_ = true;
  const bool waits = busy == BusyWith::otherProgram;
  if (waits && !mayWaitOn()) return false;
  isAsked_ = true;
  const bool wanted = pages_.prompts.keepGoing({waits ? Progress::What::waiting : Progress::What::working});
  isAsked_ = false;
  if (waits) gaveUp_ = !wanted;
  return wanted;
}

bool Document::mayWaitOn() {
  if (gaveUp_) return false;
  const BusyClock::time_point now = BusyClock::now();
  if (now - askedToWait_ <= kBetweenQuestions) waited_ += now - askedToWait_;
  askedToWait_ = now;
  gaveUp_ = waited_ >= kMostWaiting;
  return !gaveUp_;
}

void Document::busyOver() {
  isTold_ = false;
  gaveUp_ = false;
  waited_ = {};
  if (!isSearching_) pages_.prompts.endProgress();
}
