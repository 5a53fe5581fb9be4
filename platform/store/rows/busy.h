#pragma once

#include <functional>

namespace store {

/// What an operation takes its time with.
enum class Busy {
  working,  ///< the statement itself
  waiting,  ///< another program's lock
};

/// Asked again and again, on the thread that called the operation, whether to stop it: true does. It neither
/// uses the database nor throws. Null asks nobody.
using BusyQuestion = std::function<bool(Busy busy)>;

}  // namespace store
