#include "data/last_error.h"

#include <windows.h>

#include <oleauto.h>

#include "base/com_handles.h"
#include "data/value_conversion.h"

void leaveLastErrorText(const wchar_t* text) {
  ComPtr<ICreateErrorInfo> made;
  ComPtr<IErrorInfo> info;
  if (FAILED(CreateErrorInfo(made.put()))) return;
  made->SetDescription(const_cast<wchar_t*>(text));
  if (SUCCEEDED(made.query(info))) SetErrorInfo(0, info.get());
}

String takeLastErrorText() {
  ComPtr<IErrorInfo> info;
  UniqueBstr text;
  if (GetErrorInfo(0, info.put()) != S_OK || FAILED(info->GetDescription(text.put()))) return String();
  return textOfBstr(text.get());
}
