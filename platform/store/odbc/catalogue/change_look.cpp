#include "platform/store/odbc/catalogue/change_look.h"

#include <charconv>
#include <utility>

#include "platform/store/odbc/driver/answer.h"

namespace store {

namespace {

using namespace std::chrono_literals;

// So long after a change the server has surely counted it, or never will.
constexpr auto kCountedAfter = 15s;

constexpr const char* kLook =
    "SELECT count(*) || ' ' || coalesce(sum(relid::bigint), 0), "
    "coalesce(sum(n_tup_ins + n_tup_upd + n_tup_del), 0)::bigint FROM pg_stat_user_tables";

}  // namespace

Status ChangeLook::look(Seen* seen) {
  Answer answer;
  if (Status status = ask(connection_, kLook, {}, &answer); !status) {
    if (connection_.session() == nullptr) connection_.tellLater(status);
    return status;
  }
  const std::string text = answer.empty() ? std::string() : answer[0][1].value_or("");
  if (std::from_chars(text.data(), text.data() + text.size(), seen->changes).ec != std::errc()) {
    return {ErrorCode::notAvailable, "The server does not count changes."};
  }
  seen->tables = answer[0][0].value_or("");
  return {};
}

Status ChangeLook::count(std::int64_t* count) {
  const Clock::time_point now = Clock::now();
  if (connection_.session() == nullptr) {
    return {ErrorCode::inputOutput, "There is no connection to the server."};
  }
  if (!lookedAt_ || now - *lookedAt_ >= betweenLooks_) {
    lookedAt_ = now;
    Seen seen;
    if (Status status = look(&seen); !status) return status;
    const std::int64_t own = connection_.changedRows() - std::exchange(ownRows_, connection_.changedRows());
    if (own != 0) changedAt_ = now;
    if (now - changedAt_ > kCountedAfter) uncounted_ = 0;
    uncounted_ += own;
    const bool isDefinedHere =
        std::exchange(definitions_, connection_.definitions()) != connection_.definitions();
    if (seen_) {
      const std::int64_t counted = seen.changes - seen_->changes;
      const bool isOthers = counted < 0 || counted > uncounted_;
      uncounted_ = isOthers ? 0 : uncounted_ - counted;
      if (!isDefinedHere && (isOthers || seen.tables != seen_->tables)) ++count_;
    }
    seen_ = std::move(seen);
  }
  *count = count_;
  return {};
}

}  // namespace store
