// What scripts see of a connection: the members of all of its interfaces under one name.
#include "platform/store/automation/module/execute_arguments.h"
#include "platform/store/automation/objects/connection.h"

namespace automation {

namespace {

constexpr DISPID kExecuteMember = 4;  // in adoce.idl

// The members of the other interfaces, in adoce.idl.
constexpr DISPID kFirstOfHistory = 200;
constexpr DISPID kLastOfHistory = 204;
constexpr DISPID kFirstOfCopies = 300;
constexpr DISPID kLastOfCopies = 311;

bool isAmong(DISPID member, DISPID first, DISPID last) {
  return member >= first && member <= last;
}

}  // namespace

HRESULT ConnectionObject::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                 DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                 UINT* badArgument) {
  const auto invokeOn = [&](auto* own, REFIID interfaceId) -> HRESULT {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return withTypeInfo(
        [&](const ComPtr<ITypeInfo>& info) {
          return info->Invoke(own, member, flags, arguments, result, exception, badArgument);
        },
        interfaceId);
  };
  if (isAmong(member, kFirstOfHistory, kLastOfHistory)) {
    return invokeOn(static_cast<IAdoceHistory*>(this), __uuidof(IAdoceHistory));
  }
  if (isAmong(member, kFirstOfCopies, kLastOfCopies)) {
    return invokeOn(static_cast<IAdoceCopies*>(this), __uuidof(IAdoceCopies));
  }
  const auto invoke = [&](DISPPARAMS* given) {
    return AutomationObject::Invoke(member, reserved, locale, flags, given, result, exception, badArgument);
  };
  const bool isExecute = member == kExecuteMember && (flags & DISPATCH_METHOD) != 0;
  if (!isExecute || arguments == nullptr) return invoke(arguments);
  try {
    ExecuteArguments own(*arguments);
    return invoke(own.get());
  } catch (...) {
    return reportException(__uuidof(IAdoceConnection), source(), nullptr);
  }
}

HRESULT ConnectionObject::InterfaceSupportsErrorInfo(REFIID interfaceId) {
  if (interfaceId == __uuidof(IAdoceHistory) || interfaceId == __uuidof(IAdoceCopies)) return S_OK;
  return AutomationObject::InterfaceSupportsErrorInfo(interfaceId);
}

HRESULT ConnectionObject::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                        DISPID* ids) {
  HRESULT found = AutomationObject::GetIDsOfNames(reserved, names, count, locale, ids);
  for (const IID& interfaceId : {__uuidof(IAdoceHistory), __uuidof(IAdoceCopies)}) {
    if (found != DISP_E_UNKNOWNNAME) break;
    found = withTypeInfo([&](const ComPtr<ITypeInfo>& own) { return own->GetIDsOfNames(names, count, ids); },
                         interfaceId);
  }
  return found;
}

}  // namespace automation
