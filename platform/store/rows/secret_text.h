#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace store {

/// Overwrites a text, so that nothing of it stays in the memory that it gives back.
template <typename Text>
void wipe(Text* text) {
  volatile auto* place = text->data();
  for (std::size_t index = 0; index < text->size(); ++index) place[index] = 0;
  text->clear();
}

/// A text that is overwritten when it goes.
class SecretText {
 public:
  explicit SecretText(std::string text) : text_(std::move(text)) {}
  ~SecretText() { wipe(&text_); }
  SecretText(const SecretText&) = default;
  SecretText& operator=(const SecretText&) = delete;

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace store
