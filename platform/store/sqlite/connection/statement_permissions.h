#pragma once

#include <sqlite3.h>

namespace store {

/// What statements may do to a connection. Those from outside may neither reach other files nor touch the
/// transactions, the temporary database or the names of the catalogue, nor weaken the durability.
class StatementPermissions {
 public:
  /// Judges all that is prepared on `connection` from now on, as long as that is open. This object stays
  /// where it is and outlives the connection's last preparation.
  void watchOver(sqlite3* connection);

  /// What is prepared now comes from outside.
  void beginOutside();
  /// What is prepared now is the engine's own again. Returns whether anything that was prepared since
  /// beginOutside() reads a table, view or table-valued function.
  bool endOutside();

 private:
  static int authorize(void* self, int action, const char* first, const char* second, const char* database,
                       const char* trigger);
  bool allows(int action, const char* first, const char* second, const char* database);

  bool isOutside_ = false;
  bool readsTable_ = false;
};

}  // namespace store
