#include "platform/store/cdbtool/console.h"

#include <cerrno>
#include <cstring>

#include "platform/store/cdbtool/system.h"

namespace cdbtool {

namespace {

constexpr std::chrono::milliseconds kBetweenBars{100};

}  // namespace

Console::Console(bool isQuiet)
    : isQuiet_(isQuiet), hasBar_(!isQuiet && isTerminal(stderr)), next_(std::chrono::steady_clock::now()) {}

void Console::tell(const std::string& text) {
  endProgress();
  if (!isQuiet_) std::fprintf(stderr, "%s\n", text.c_str());
}

void Console::complain(const std::string& text) {
  std::fprintf(stderr, "cdbtool: %s\n", text.c_str());
}

void Console::showProgress(std::string_view what, std::int64_t done, std::int64_t total) {
  const auto now = std::chrono::steady_clock::now();
  if (!hasBar_ || now < next_) return;
  next_ = now + kBetweenBars;
  isShown_ = true;
  const std::string label(what);
  if (total <= 0) {
    std::fprintf(stderr, "\r%s %lld\x1b[K", label.c_str(), static_cast<long long>(done));
  } else {
    constexpr int kWidth = 30;
    const int part = static_cast<int>(done * kWidth / total);
    const std::string bar(static_cast<std::size_t>(part), '#');
    std::fprintf(stderr, "\r%s [%-30s] %3d %%\x1b[K", label.c_str(), bar.c_str(),
                 static_cast<int>(done * 100 / total));
  }
  std::fflush(stderr);
}

void Console::endProgress() {
  if (!isShown_) return;
  isShown_ = false;
  std::fputs("\r\x1b[K", stderr);
}

std::string counted(std::int64_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string countOfRecords(std::int64_t count) {
  return counted(count, "record");
}

int failed(const store::Status& status) {
  Console::complain(status.message());
  return kFailed;
}

store::Status withForceHint(const store::Status& status, bool replacesFiles) {
  if (status.code() != store::ErrorCode::fileExists || replacesFiles) return status;
  return {status.code(), status.message() + " --force replaces a file."};
}

store::Status StandardOutput::finish() {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return {};
  return {store::ErrorCode::inputOutput,
          std::string("The output can't be written: ") + std::strerror(errno) + "."};
}

}  // namespace cdbtool
