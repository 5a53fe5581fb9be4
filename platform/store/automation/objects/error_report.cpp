#include "platform/store/automation/objects/error_report.h"

#include <exception>
#include <new>

#include "platform/store/automation/objects/errors.h"
#include "platform/store/automation/values/com_values.h"
#include "platform/store/automation/values/text.h"

namespace automation {

namespace {

void setErrorInfo(const std::wstring& description, REFIID interfaceId, const wchar_t* source) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.put()))) return;
  std::wstring mutableText = description;  // the interface takes texts that it could change
  std::wstring mutableSource = source;
  creator->SetDescription(mutableText.data());
  creator->SetSource(mutableSource.data());
  creator->SetGUID(interfaceId);
  ComPtr<IErrorInfo> info;
  if (FAILED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.put())))) return;
  SetErrorInfo(0, info.get());
}

}  // namespace

HRESULT reportFailure(const Outcome& outcome, REFIID interfaceId, const wchar_t* source,
                      ErrorsObject* errors) noexcept {
  try {
    const std::wstring description = wideOf(outcome.message());
    setErrorInfo(description, interfaceId, source);
    if (errors != nullptr) errors->replaceWith(outcome.result(), description, source);
  } catch (const std::exception&) {
    // Without memory for a description the result itself still tells of the failure.
    SetErrorInfo(0, nullptr);
  }
  return outcome.result();
}

HRESULT reportException(REFIID interfaceId, const wchar_t* source, ErrorsObject* errors) noexcept {
  try {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      return reportFailure({E_OUTOFMEMORY, "There is not enough memory."}, interfaceId, source, errors);
    } catch (const std::exception& failure) {
      return reportFailure({E_FAIL, failure.what()}, interfaceId, source, errors);
    }
  } catch (...) {
    SetErrorInfo(0, nullptr);
    return E_FAIL;
  }
}

}  // namespace automation
