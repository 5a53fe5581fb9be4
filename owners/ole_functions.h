#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include "owners/late_function.h"

/// What the program uses of COM and OLE Automation. Their modules are loaded while the windows are made, or
/// when a function is called before that; the start would wait for them if they were linked in.
namespace ole {

inline constinit const LateFunction<decltype(CLSIDFromProgID), E_NOTIMPL> clsidFromProgId{L"ole32.dll",
                                                                                          "CLSIDFromProgID"};
inline constinit const LateFunction<decltype(CoCreateInstance), E_NOTIMPL> coCreateInstance{
    L"ole32.dll", "CoCreateInstance"};
inline constinit const LateFunction<decltype(CoDecrementMTAUsage), E_NOTIMPL> coDecrementMTAUsage{
    L"ole32.dll", "CoDecrementMTAUsage"};
inline constinit const LateFunction<decltype(CoGetApartmentType), E_NOTIMPL> coGetApartmentType{
    L"ole32.dll", "CoGetApartmentType"};
inline constinit const LateFunction<decltype(CoGetClassObject), E_NOTIMPL> coGetClassObject{
    L"ole32.dll", "CoGetClassObject"};
inline constinit const LateFunction<decltype(CoIncrementMTAUsage), E_NOTIMPL> coIncrementMTAUsage{
    L"ole32.dll", "CoIncrementMTAUsage"};
inline constinit const LateFunction<decltype(CoInitializeEx), E_NOTIMPL> coInitializeEx{L"ole32.dll",
                                                                                        "CoInitializeEx"};
inline constinit const LateFunction<decltype(CoUninitialize)> coUninitialize{L"ole32.dll", "CoUninitialize"};
inline constinit const LateFunction<decltype(StringFromGUID2)> stringFromGuid{L"ole32.dll",
                                                                              "StringFromGUID2"};
inline constinit const LateFunction<decltype(GetErrorInfo), E_NOTIMPL> getErrorInfo{L"oleaut32.dll",
                                                                                    "GetErrorInfo"};
inline constinit const LateFunction<decltype(SafeArrayAccessData), E_NOTIMPL> safeArrayAccessData{
    L"oleaut32.dll", "SafeArrayAccessData"};
inline constinit const LateFunction<decltype(SafeArrayCreateVector), nullptr> safeArrayCreateVector{
    L"oleaut32.dll", "SafeArrayCreateVector"};
inline constinit const LateFunction<decltype(SafeArrayGetDim)> safeArrayGetDim{L"oleaut32.dll",
                                                                               "SafeArrayGetDim"};
inline constinit const LateFunction<decltype(SafeArrayGetElement), E_NOTIMPL> safeArrayGetElement{
    L"oleaut32.dll", "SafeArrayGetElement"};
inline constinit const LateFunction<decltype(SafeArrayGetUBound), E_NOTIMPL> safeArrayGetUBound{
    L"oleaut32.dll", "SafeArrayGetUBound"};
inline constinit const LateFunction<decltype(SafeArrayUnaccessData), E_NOTIMPL> safeArrayUnaccessData{
    L"oleaut32.dll", "SafeArrayUnaccessData"};
inline constinit const LateFunction<decltype(SysAllocString), nullptr> sysAllocString{L"oleaut32.dll",
                                                                                      "SysAllocString"};
inline constinit const LateFunction<decltype(SysAllocStringLen), nullptr> sysAllocStringLen{
    L"oleaut32.dll", "SysAllocStringLen"};
inline constinit const LateFunction<decltype(SysFreeString)> sysFreeString{L"oleaut32.dll", "SysFreeString"};
inline constinit const LateFunction<decltype(SysStringByteLen)> sysStringByteLen{L"oleaut32.dll",
                                                                                 "SysStringByteLen"};
inline constinit const LateFunction<decltype(SysStringLen)> sysStringLen{L"oleaut32.dll", "SysStringLen"};
inline constinit const LateFunction<decltype(VarR8FromStr), E_NOTIMPL> varR8FromStr{L"oleaut32.dll",
                                                                                    "VarR8FromStr"};
inline constinit const LateFunction<decltype(VariantChangeType), E_NOTIMPL> variantChangeType{
    L"oleaut32.dll", "VariantChangeType"};
inline constinit const LateFunction<decltype(VariantClear), E_NOTIMPL> variantClear{L"oleaut32.dll",
                                                                                    "VariantClear"};
inline constinit const LateFunction<decltype(VariantTimeToSystemTime)> variantTimeToSystemTime{
    L"oleaut32.dll", "VariantTimeToSystemTime"};

}  // namespace ole
