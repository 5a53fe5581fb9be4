#include "records/parts/former_states.h"

#include <chrono>

#include "base/wait_cursor.h"
#include "data/handles/file_identity.h"
#include "records/copy_text.h"

namespace {

/// For all copies of a list together.
constexpr std::chrono::milliseconds kMostCounting{300};

std::wstring quoted(const String& path) {
  return std::wstring(L"Database ") + path.text();
}

}  // namespace

void FormerStates::tellNotKept() {
  const String reason = database().takeCopyFailure();
  if (reason.isEmpty()) return;
  tellFailure(L"The state before the first change could not be kept as a copy. The change is stored.",
              reason);
}

bool FormerStates::mayDelete(const Outcome& kept, const std::wstring& what) {
  if (kept) return true;
  if (kept.cause() == Outcome::Cause::stopped) return false;
  const std::wstring text = L"No copy of " + what + L" can be kept.\n" + kept.reason().text() +
                            L"\nDo you want to delete it for good?";
  return pages().prompts.ask(PromptOwner::mainWindow, Question::discard, text.c_str());
}

std::vector<String> FormerStates::databases() {
  std::vector<String> found = database().databasesWithCopies();
  const String& present = presentDatabase();
  if (present.isEmpty()) return found;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!isSameFile(found[i], present)) continue;
    found.erase(found.begin() + static_cast<std::ptrdiff_t>(i));
    break;
  }
  found.insert(found.begin(), present);
  return found;
}

std::vector<DatabaseCopy> FormerStates::copiesOf(const String& path) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + kMostCounting;
  std::vector<DatabaseCopy> copies = database().copiesOf(path);
  for (DatabaseCopy& copy : copies) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    if (copy.records != DatabaseCopy::kNotCounted || left.count() <= 0) continue;
    copy.records = database().countRecordsOfCopy(copy.path, static_cast<unsigned>(left.count()));
  }
  return copies;
}

/// While the list was shown the copy may have got another name: once its records are counted that says how
/// many.
String FormerStates::presentPathOf(const String& path, const DatabaseCopy& copy) {
  for (const DatabaseCopy& each : database().copiesOf(path)) {
    if (each.time == copy.time && each.reason == copy.reason) return each.path;
  }
  return copy.path;
}

bool FormerStates::isLooking() const {
  return !lookedAt_.isEmpty() && document().isDatabaseOpen() &&
         isSameFile(lookedAt_, document().databasePath());
}

const String& FormerStates::presentDatabase() const {
  return isLooking() ? lookedFrom_ : document().databasePath();
}

/// On the page that is shown, with the table or query in use if it is there too. Nothing has changed when it
/// does not open.
bool FormerStates::openInstead(const String& path) {
  if (!document().canLeaveRecord()) return false;
  if (const Outcome opens = database().tryOpening(path); !opens) {
    tellFailure(quoted(path) + L" could not be opened.", opens.reason());
    return false;
  }
  if (!document().isDatabaseOpen()) {
    const Outcome opened = document().openDatabase(path);
    if (!opened) tellFailure(quoted(path) + L" could not be opened.", opened.reason());
    return static_cast<bool>(opened);
  }
  const OpenPlace before = place();
  closeRecords();
  document().closeDatabase();
  return openAt(path, before);
}

void FormerStates::look(const String& path, const DatabaseCopy& copy) {
  const String from = path;
  const String looked = presentPathOf(path, copy);
  if (!openInstead(looked)) return;
  lookedAt_ = looked;
  lookedFrom_ = from;
  const std::wstring text = std::wstring(L"This is ") + from.text() + L" as it was on " +
                            copyTimeText(copy.time) +
                            L". It can only be read. \"Go back to...\" leads to the present state again.";
  pages().prompts.tell(PromptOwner::mainWindow, Notice::remark, text.c_str());
}

void FormerStates::returnToPresent() {
  if (!isLooking()) return;
  const String path = lookedFrom_;
  if (openInstead(path)) lookedAt_.clear();
}

/// While the database is not open, if it is the one that is, or that a copy of is; it is open again
/// afterwards.
template <typename Work>
void FormerStates::workOn(const String& path, Work work) {
  const String worked = path;
  const bool wasOpen = document().isDatabaseOpen();
  const bool isPresent = !wasOpen || isSameFile(worked, presentDatabase());
  if (wasOpen && !document().canLeaveRecord()) return;
  const OpenPlace before = place();
  const String opened = document().databasePath();
  if (wasOpen && isPresent) {
    closeRecords();
    document().closeDatabase();
  }
  Outcome done;
  {
    const WaitCursor wait;
    done = work(worked);
  }
  if (!done) tellFailure(quoted(worked) + L" could not be put back.", done.reason());
  if (!isPresent) return;
  if (done) lookedAt_.clear();
  if (wasOpen) {
    openAt(done ? worked : opened, before);
  } else if (done) {
    if (const Outcome shown = document().openDatabase(worked); !shown) {
      tellFailure(quoted(worked) + L" could not be opened.", shown.reason());
    }
  }
}

void FormerStates::putBack(const String& path, const DatabaseCopy& copy) {
  const std::wstring text = std::wstring(L"Do you want to put back ") + path.text() + L" as it was on " +
                            copyTimeText(copy.time) + L"?\nHow it is now is kept as a copy before.";
  if (!pages().prompts.ask(PromptOwner::mainWindow, Question::discard, text.c_str())) return;
  workOn(path, [&](const String& worked) { return database().putBack(worked, presentPathOf(worked, copy)); });
}

NameList FormerStates::missingTables(const String& path, const DatabaseCopy& copy) {
  NameList names;
  if (const Outcome listed = database().listMissingTables(path, presentPathOf(path, copy), names); !listed) {
    tellFailure(L"The tables of the copy could not be listed.", listed.reason());
  } else if (names.isEmpty()) {
    refuse(L"The database has all tables of this copy.");
  }
  return names;
}

void FormerStates::putTableBack(const String& path, const DatabaseCopy& copy, const String& table) {
  workOn(path, [&](const String& worked) {
    return database().putTableBack(worked, presentPathOf(worked, copy), table);
  });
}
