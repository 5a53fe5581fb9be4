#include "data/last_error.h"

#include <windows.h>

#include <oleauto.h>

#include "base/com_handles.h"
#include "data/value_conversion.h"

String takeLastErrorText() {
  ComPtr<IErrorInfo> info;
  UniqueBstr text;
  if (GetErrorInfo(0, info.put()) != S_OK || FAILED(info->GetDescription(text.put()))) return String();
  return textOfBstr(text.get());
}
