// The bytes are a file of texts, one behind the other, as the program writes them.
#include <algorithm>
#include <cstring>

#include "base/string_layout.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

/// Reads from memory, and counts.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}
  std::size_t read(void* to, std::size_t count) {
    const std::size_t got = std::min(count, bytes_.size() - place_);
    std::memcpy(to, bytes_.data() + place_, got);
    place_ += got;
    return got;
  }
  std::size_t place() const { return place_; }

 private:
  std::string_view bytes_;
  std::size_t place_ = 0;
};

std::u16string nextOf(Bytes& bytes) {
  return stringlayout::read([&](void* to, std::size_t count) { return bytes.read(to, count); });
}

std::string written(const std::u16string& text) {
  const std::uint32_t count = stringlayout::byteCountOf(text.size());
  std::string bytes(reinterpret_cast<const char*>(&count), sizeof count);
  if (count == 0) return bytes;
  bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
  bytes += '\0';
  return bytes;
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  Bytes bytes(fuzz::textOf(data, length));
  for (std::size_t before = length + 1; bytes.place() < length && bytes.place() != before;) {
    before = bytes.place();
    const std::u16string text = nextOf(bytes);
    fuzz::require(text.size() * sizeof(char16_t) <= length, "no character comes from nowhere");
    const std::string again = written(text);
    Bytes copy(again);
    fuzz::require(nextOf(copy) == text, "what is written is read again");
    fuzz::require(copy.place() == again.size(), "and all of it is used up");
  }
  return 0;
}
