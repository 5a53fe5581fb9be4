#include "platform/store/sqlite/connection/moment_collation.h"

#include <new>
#include <string_view>

#include "platform/store/sql/moments.h"

namespace store {
namespace {

int compare(void* connection, int leftLength, const void* left, int rightLength, const void* right) {
  const std::string_view leftText(static_cast<const char*>(left), static_cast<std::size_t>(leftLength));
  const std::string_view rightText(static_cast<const char*>(right), static_cast<std::size_t>(rightLength));
  try {
    return compareMoments(leftText, rightText);
  } catch (const std::bad_alloc&) {
    // A collation has no other way to fail than to have the statement stopped.
    sqlite3_interrupt(static_cast<sqlite3*>(connection));
    return leftText.compare(rightText);
  }
}

}  // namespace

int addMomentCollation(sqlite3* connection) {
  return sqlite3_create_collation_v2(connection, kMomentCollation, SQLITE_UTF8, connection, compare, nullptr);
}

}  // namespace store
