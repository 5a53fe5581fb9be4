#include "tests/ui/support/random_texts.h"

#include <iterator>

const RandomTexts::Range RandomTexts::kRanges[] = {
    {0x0001, 0x001F}, {0x0020, 0x007E}, {0x00A0, 0x024F}, {0x0250, 0x02FF}, {0x0300, 0x036F},
    {0x0370, 0x03FF}, {0x0400, 0x052F}, {0x0590, 0x05FF}, {0x0600, 0x06FF}, {0x0700, 0x074F},
    {0x0750, 0x07FF}, {0x0800, 0x08FF}, {0x0900, 0x097F}, {0x0980, 0x09FF}, {0x0A00, 0x0AFF},
    {0x0B00, 0x0BFF}, {0x0C00, 0x0CFF}, {0x0D00, 0x0DFF}, {0x0E00, 0x0E7F}, {0x0E80, 0x0EFF},
    {0x0F00, 0x0FFF}, {0x1000, 0x109F}, {0x1100, 0x11FF}, {0x1780, 0x17FF}, {0x1800, 0x18AF},
    {0x1AB0, 0x1BFF}, {0x1DC0, 0x1FFF}, {0x2000, 0x206F}, {0x20D0, 0x20FF}, {0x3040, 0x30FF},
    {0x4E00, 0x4EFF}, {0xA800, 0xABFF}, {0xAC00, 0xACFF}, {0xD800, 0xDFFF}, {0xE000, 0xE0FF},
    {0xFB1D, 0xFDFF}, {0xFE00, 0xFEFF}, {0xFF00, 0xFFFF},
};

const RandomTexts::Range& RandomTexts::anyRange() {
  return kRanges[upTo(static_cast<unsigned>(std::size(kRanges)) - 1)];
}

std::wstring RandomTexts::next() {
  const Range& one = anyRange();
  const Range& other = anyRange();
  const unsigned style = upTo(3);
  const std::size_t count = 1 + upTo(upTo(19) == 0 ? 200 : 12);
  const std::size_t different = 1 + upTo(4);
  std::wstring text;
  while (text.size() < count) {
    if (count > 13 && text.size() >= different) {
      text += text[upTo(static_cast<unsigned>(different) - 1)];  // a long run of a few signs
    } else if (style == 0) {
      text += anyOf(one);
    } else if (style == 1) {
      text += anyOf(upTo(1) == 0 ? one : other);
    } else if (style == 2) {
      text += anyOf(anyRange());
    } else {
      text += static_cast<wchar_t>(1 + upTo(0xFFFD));
    }
  }
  return text;
}
