#include "platform/store/odbc/session_passwords.h"

#include <map>
#include <mutex>

#include "platform/store/rows/secret_text.h"

namespace store {

namespace {

struct Passwords {
  std::mutex mutex;
  std::map<std::string, SecretText> byLink;
};

Passwords& passwords() {
  static Passwords all;
  return all;
}

}  // namespace

std::optional<std::string> rememberedPassword(const std::string& link) {
  Passwords& all = passwords();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto found = all.byLink.find(link);
  if (found == all.byLink.end()) return std::nullopt;
  return found->second.text();
}

void rememberPassword(const std::string& link, const std::string& password) {
  Passwords& all = passwords();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.byLink.erase(link);
  all.byLink.emplace(link, SecretText(password));
}

void forgetPassword(const std::string& link) {
  Passwords& all = passwords();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.byLink.erase(link);
}

}  // namespace store
