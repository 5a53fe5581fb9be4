#include "records/position_text.h"

#include <string>

namespace {

constexpr std::uint32_t kPaddedBelow = 10000;
constexpr int kPaddedDigitCount = 8;

}  // namespace

String positionText(std::uint32_t position, std::uint32_t count) {
  if (count == 0) return L"No Records";
  const std::wstring first = std::to_wstring(position);
  const std::wstring last = std::to_wstring(count);
  std::wstring text;
  if (count < kPaddedBelow) {
    const int pad = kPaddedDigitCount - static_cast<int>(first.size() + last.size());
    // A blank is about half as wide as a digit.
    const int blanks = pad > 0 ? (pad + 1) / 2 : 0;
    text.assign(std::size_t{1} + static_cast<std::size_t>(blanks), L' ');
  }
  text += first + L" / " + last;
  return text.c_str();
}
