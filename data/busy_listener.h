#pragma once

#include <cstdint>

/// What an operation of the database takes its time with.
enum class BusyWith : std::uint8_t {
  itself,        ///< a statement that is being run
  otherProgram,  ///< the lock that another program holds on the file
};

/// Who is told while an operation takes its time, on the thread that called it, some fifty times a second.
class BusyListener {
 public:
  virtual ~BusyListener() = default;

  /// False to give it up: it then fails and has changed nothing. The database can't be used meanwhile, each
  /// operation fails. std::bad_alloc may be thrown and gives nothing up.
  virtual bool goesOn(BusyWith busy) = 0;
};
