#include "tests/store/faults/small_disk_linux.h"

#include <fstream>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace store {

namespace {

bool writeLine(const char* path, const std::string& line) {
  std::ofstream file(path);
  return static_cast<bool>(file << line << std::flush);
}

/// A name space of this process, where nobody else sees what it mounts and where that ends with the process
/// at the latest. Ordinary users need a name space of users as well, in which they stay who they are.
bool leaveNameSpaces() {
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (unshare(CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) != 0) return false;
  if (user != 0) {
    const auto itself = [](unsigned number) {
      return std::to_string(number) + " " + std::to_string(number) + " 1";
    };
    if (!writeLine("/proc/self/setgroups", "deny") || !writeLine("/proc/self/uid_map", itself(user)) ||
        !writeLine("/proc/self/gid_map", itself(group)))
      return false;
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

bool mountSmallDisk(const std::filesystem::path& folder, int megabytes) {
  // Who has left them once stays outside; in the new ones it can't be done again.
  static const bool hasLeft = leaveNameSpaces();
  const std::string size = "size=" + std::to_string(megabytes) + "m";
  return hasLeft && mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

bool removeSmallDisk(const std::filesystem::path& folder) {
  return umount(folder.c_str()) == 0;
}

}  // namespace store
