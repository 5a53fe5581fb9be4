// What the user sees of an operation that takes its time, and how long he is kept waiting.
#include <algorithm>

#include "records/document.h"
#include "records/raised.h"

namespace {

/// In all, for one thing that the user did, however many readings each find the file locked.
constexpr std::chrono::seconds kMostWaiting{5};

/// Between two questions of one wait at most; what lies further apart was spent with something else.
constexpr std::chrono::milliseconds kBetweenQuestions{200};

Progress progressOf(const MovingState& state) {
  constexpr std::uint64_t kAll = 100;
  const auto percent =
      static_cast<std::uint32_t>(state.total == 0 ? 0 : std::min(kAll, state.done * kAll / state.total));
  switch (state.what) {
    case MovingState::What::looking:
      return {Progress::What::examining, percent, kAll};
    case MovingState::What::storing:
      return {Progress::What::importing, percent, kAll};
    case MovingState::What::writing:
      break;
  }
  return {Progress::What::exporting, static_cast<std::uint32_t>(state.done)};
}

}  // namespace

bool Document::goesOn(BusyWith busy) {
  // What is painted meanwhile does without the database.
  if (isAsked_) return true;
  const bool waits = busy == BusyWith::otherProgram;
  // It gives way to everything.
  if (unaskedWaitEnd_) return waits ? BusyClock::now() < *unaskedWaitEnd_ : !pages_.prompts.isInputWaiting();
  if (waits) {
    tellWhenOver();
    if (!mayWaitOn()) return false;
    gaveUp_ = !keepsGoing({Progress::What::waiting});
    return !gaveUp_;
  }
  // How far records were searched or moved tells more.
  const bool wanted = keepsGoing(searched_.value_or(moved_.value_or(Progress{Progress::What::working})));
  // The key that was pressed is gone: who searches is to know of it, too.
  if (!wanted && isSearching_) searchStopped_ = true;
  return wanted;
}

bool Document::movesOn(const MovingState& state) {
  if (isAsked_) return true;
  moved_ = progressOf(state);
  return keepsGoing(*moved_);
}

void Document::tellWhenOver() {
  if (!isTold_) pages_.prompts.tellWhenOver();
  isTold_ = true;
}

std::chrono::milliseconds Document::searchLasted() const {
  return std::chrono::floor<std::chrono::milliseconds>(BusyClock::now() - searchBegan_);
}

bool Document::searchGoesOn(Progress progress) {
  searched_ = progress;
  progress.lasted = searchLasted();
  return pages_.prompts.keepGoing(progress);
}

bool Document::keepsGoing(Progress progress) {
  tellWhenOver();
  // A part of it may last so long that the next one would be taken for another thing.
  if (isSearching_) progress.lasted = searchLasted();
  // Where the asking fails it is over as well: no command could run any more otherwise.
  const Raised asked(isAsked_);
  return pages_.prompts.keepGoing(progress);
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
  moved_.reset();
  if (!isSearching_) pages_.prompts.endProgress();
  tellUnreadQuery();
}
