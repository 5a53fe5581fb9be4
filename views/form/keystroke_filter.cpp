#include "views/form/keystroke_filter.h"

namespace {

constexpr wchar_t kBackspace = L'\b';

KeystrokeVerdict takeOne(KeystrokeState& state) {
  ++state.textLength;
  return KeystrokeVerdict::accept;
}

KeystrokeVerdict removeOne(KeystrokeState& state) {
  // Below zero the count would be larger than any maximum, and nothing could be typed any more.
  if (state.textLength != 0) --state.textLength;
  return KeystrokeVerdict::accept;
}

}  // namespace

KeystrokeVerdict filterKeystroke(wchar_t character, const KeystrokeRules& rules, KeystrokeState& state) {
  if (character == kBackspace) return removeOne(state);
  if (rules.numeric) {
    const bool isDigit = character >= L'0' && character <= L'9';
    if (isDigit || (character == L'-' && rules.minusAllowed)) return takeOne(state);
    return KeystrokeVerdict::rejectWithMessage;
  }
  if (character == L'\t') {
    state.tabPressed = true;
    return KeystrokeVerdict::reject;
  }
  // One character more than the maximum is taken.
  if (state.textLength > rules.maximumLength) return KeystrokeVerdict::reject;
  return takeOne(state);
}
