#pragma once

#include <cstddef>
#include <random>
#include <string>

/// Texts as no human writes them: all scripts, unpaired surrogates, controls, combining marks without a
/// letter, long runs of one sign. The same ones in every run.
class RandomTexts {
 public:
  std::wstring next();

 private:
  struct Range {
    unsigned first;
    unsigned last;
  };
  unsigned upTo(unsigned last) { return static_cast<unsigned>(random_() % (last + 1)); }
  const Range& anyRange();
  wchar_t anyOf(const Range& range) {
    return static_cast<wchar_t>(range.first + upTo(range.last - range.first));
  }

  static const Range kRanges[];
  std::mt19937 random_{20010309};
};
