#include <csignal>
#include <cwctype>
#include <locale.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include "platform/store/cdbtool/system.h"

namespace cdbtool {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int /*signal*/) {
  interrupted = 1;
}

constexpr int kInterrupts[] = {SIGINT, SIGTERM, SIGHUP};

/// Puts interrupts off, so that none comes between the look whether there was one and the wait.
class InterruptsPutOff {
 public:
  InterruptsPutOff() {
    sigset_t all;
    sigemptyset(&all);
    for (const int signal : kInterrupts) sigaddset(&all, signal);
    pthread_sigmask(SIG_BLOCK, &all, &before_);
  }
  ~InterruptsPutOff() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  InterruptsPutOff(const InterruptsPutOff&) = delete;
  InterruptsPutOff& operator=(const InterruptsPutOff&) = delete;

  /// Waits until something can be read. False when an interrupt comes, or came before.
  bool waitFor(int stream) const {
    pollfd awaited{stream, POLLIN, 0};
    return interrupted == 0 && ppoll(&awaited, 1, nullptr, &before_) == 1;
  }

 private:
  sigset_t before_{};
};

}  // namespace

std::vector<std::string> argumentsOf(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

void prepareStreams() {
  std::signal(SIGPIPE, SIG_IGN);
}

bool isTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

std::optional<std::string> askSecret(const std::string& question) {
  termios before{};
  if (!isTerminal(stdin) || tcgetattr(STDIN_FILENO, &before) != 0) return std::nullopt;
  termios silent = before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  // What was typed before the question is none of the answer.
  if (tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) != 0) return std::nullopt;
  std::fputs(question.c_str(), stderr);
  std::fflush(stderr);
  std::string answer;
  bool isWhole = false;
  char sign = 0;
  // One by one: what an interrupt leaves behind in a buffer would be taken for something else later.
  {
    const InterruptsPutOff putOff;
    while (!isWhole && putOff.waitFor(STDIN_FILENO) && read(STDIN_FILENO, &sign, 1) == 1) {
      isWhole = sign == '\n';
      if (!isWhole) answer += sign;
    }
  }
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
  std::fputs("\n", stderr);
  if (isWhole) return answer;
  return std::nullopt;
}

void noteInterrupts() {
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  // Reading that waits is to end, too, and the second one finds the system's own way.
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : kInterrupts) sigaction(signal, &action, nullptr);
}

bool wasInterrupted() {
  return interrupted != 0;
}

char16_t foldedUnit(char16_t unit) {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const wint_t upper = locale != nullptr ? towupper_l(unit, locale) : std::towupper(unit);
  return upper < 0x10000 ? static_cast<char16_t>(upper) : unit;
}

}  // namespace cdbtool
