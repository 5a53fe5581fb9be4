#pragma once

#include <cstdint>

/// What an operation of the database takes its time with.
enum class BusyWith : std::uint8_t {
  itself,        ///< a statement that is being run
  otherProgram,  ///< the lock that another program holds on the file
};

/// How far records have been moved between the database and another file.
struct MovingState {
  enum class What : std::uint8_t {
    looking,  ///< bytes of a file that is looked through
    storing,  ///< bytes of a file whose records are stored
    writing,  ///< records that were written out; how many there are in all is not known
  };
  What what = What::looking;
  std::uint64_t done = 0;
  std::uint64_t total = 0;  ///< 0 when it is not known
};

/// Who is told while an operation takes its time, on the thread that called it, some fifty times a second.
class BusyListener {
 public:
  virtual ~BusyListener() = default;

  /// False to give it up: it then fails and has changed nothing. The database can't be used meanwhile, each
  /// operation fails. std::bad_alloc may be thrown and gives nothing up.
  virtual bool goesOn(BusyWith busy) = 0;
  /// The same while records are moved.
  virtual bool movesOn(const MovingState& state) = 0;
};
