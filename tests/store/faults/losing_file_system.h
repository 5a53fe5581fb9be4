#pragma once

namespace store {

/// The system's files, as SQLite reaches them, on a disk whose power can be cut: of what was written, cut off
/// or deleted and not flushed afterwards a part is lost then, in no order, and single writes arrive by
/// halves. While installed it stands between SQLite and the system for every database that is opened.
class LosingFileSystem {
 public:
  static void install();
  static void uninstall();

  /// Begins anew: whatever stands in the files is on the disk. The power is cut at the operation with the
  /// 0-based `number` from now on that would change the disk; from then on every operation fails. Negative:
  /// never.
  static void begin(int number);

  /// How many such operations there were since begin().
  static int operations();

  /// Makes the files what the disk holds after the cut. What is lost is always the same for one `seed`. All
  /// files are closed. False when the power was not cut.
  static bool restart(unsigned seed);
};

}  // namespace store
