#include "platform/store/automation/objects/outcome.h"

namespace automation {

namespace {

// OLE DB's results for statements (Microsoft, "OLE DB error codes").
constexpr HRESULT oleDbError(unsigned number) {
  return static_cast<HRESULT>(0x80040E00u + number);
}

}  // namespace

HRESULT resultOf(store::ErrorCode code) {
  using store::ErrorCode;
  switch (code) {
    case ErrorCode::ok:
      return S_OK;
    case ErrorCode::invalidArgument:
      return kInvalidArgument;
    case ErrorCode::noCurrentRecord:
      return objectModelError(3021);
    case ErrorCode::illegalOperation:
      return objectModelError(3219);
    case ErrorCode::notAvailable:
    case ErrorCode::readOnly:
      return kNotAvailable;
    case ErrorCode::itemNotFound:
      return kItemNotFound;
    case ErrorCode::conversion:
      return kConversion;
    case ErrorCode::objectClosed:
      return kObjectClosed;
    case ErrorCode::objectOpen:
      return kObjectOpen;
    case ErrorCode::noCommand:
      return oleDbError(0x0C);
    case ErrorCode::badColumn:
      return oleDbError(0x11);
    case ErrorCode::errorsInCommand:
      return oleDbError(0x14);
    case ErrorCode::noTable:
      return oleDbError(0x37);
    case ErrorCode::tableExists:
      return oleDbError(0x3F);
    case ErrorCode::cannotOpen:
      return objectModelError(3002);
    case ErrorCode::passwordWanted:
      return oleDbError(0x4D);
    case ErrorCode::damaged:
      return objectModelError(3003);
    case ErrorCode::changedElsewhere:
      return oleDbError(0x38);
    case ErrorCode::constraint:
      return objectModelError(3719);
    case ErrorCode::locked:
      return objectModelError(3730);
    case ErrorCode::structureChanged:
      return objectModelError(3732);
    case ErrorCode::fileExists:
      return objectModelError(3731);
    case ErrorCode::tooLarge:
      return objectModelError(3733);
    case ErrorCode::fileGone:
      return kFileGone;
    case ErrorCode::fileReplaced:
      return kFileReplaced;
    case ErrorCode::inputOutput:
      return objectModelError(3000);
    case ErrorCode::stopped:
      return oleDbError(0x4E);
    case ErrorCode::outOfMemory:
      return E_OUTOFMEMORY;
  }
  return E_FAIL;
}

Outcome closedRecordset() {
  return {kObjectClosed, "The recordset is closed."};
}

Outcome nullPointer() {
  return {E_POINTER, "A place for the result is missing."};
}

}  // namespace automation
