#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "platform/store/rows/status.h"

namespace automation {

/// Results of the components' object model: 0x800A0000 and the number that the model's documentation
/// gives (Microsoft, "ErrorValueEnum").
constexpr HRESULT objectModelError(unsigned number) {
  return static_cast<HRESULT>(0x800A0000u + number);
}

inline constexpr HRESULT kInvalidArgument = objectModelError(3001);
inline constexpr HRESULT kNotAvailable = objectModelError(3251);
inline constexpr HRESULT kItemNotFound = objectModelError(3265);
inline constexpr HRESULT kConversion = objectModelError(3421);
inline constexpr HRESULT kObjectClosed = objectModelError(3704);
inline constexpr HRESULT kObjectOpen = objectModelError(3705);
inline constexpr HRESULT kProviderNotFound = objectModelError(3706);
inline constexpr HRESULT kInvalidConnection = objectModelError(3709);
// The model has no numbers for these.
inline constexpr HRESULT kFileGone = objectModelError(4001);
inline constexpr HRESULT kFileReplaced = objectModelError(4002);

/// The COM result of an engine's failure: negative for each code but ok, for which it is S_OK.
HRESULT resultOf(store::ErrorCode code);

/// What a method came to: S_OK, or a negative result with a sentence in English for the user.
/// Contextually true when it succeeded.
class [[nodiscard]] Outcome {
 public:
  Outcome() = default;
  Outcome(const store::Status& status)  // NOLINT(google-explicit-constructor): each is one of the other
      : result_(resultOf(status.code())), message_(status.message()) {}
  Outcome(HRESULT result, std::string message) : result_(result), message_(std::move(message)) {}

  explicit operator bool() const { return SUCCEEDED(result_); }
  HRESULT result() const { return result_; }
  const std::string& message() const { return message_; }

 private:
  HRESULT result_ = S_OK;
  std::string message_;
};

/// Failures that several objects report.
Outcome closedRecordset();
Outcome nullPointer();

}  // namespace automation
