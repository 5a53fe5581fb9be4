#include "platform/store/automation/objects/recordset.h"

#include <optional>
#include <utility>

#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"

// Opening and closing, and what a recordset is opened from. Its records are in recordset_records.cpp.

namespace automation {

namespace {

constexpr long kStateClosed = 0;
constexpr long kStateOpen = 1;
// The default value of Open's arguments in the interface definition: an argument that a script left out.
constexpr long kLeftOut = -2147483647;

store::CursorType cursorTypeOf(long type) {
  return type == 0 ? store::CursorType::forwardOnly : store::CursorType::keyset;
}

store::LockType lockTypeOf(long type) {
  return type == 1 ? store::LockType::readOnly : store::LockType::optimistic;
}

Outcome unusableConnection() {
  return {kInvalidArgument, "The connection is neither an object of ours nor a text."};
}

/// An object, or the connection string of one that is to be made, or neither. Both are the caller's.
struct GivenConnection {
  IUnknown* object = nullptr;
  BSTR text = nullptr;
};

/// Nothing for a value that can't mean a connection.
std::optional<GivenConnection> connectionNamedBy(const VARIANT& given) {
  // No default property is asked for here: a connection's own is a text.
  const VARIANT* plain = referredVariant(const_cast<VARIANT*>(&given));
  if (plain == nullptr) return std::nullopt;
  switch (V_VT(plain)) {
    case VT_EMPTY:
    case VT_NULL:
      return GivenConnection{};
    case VT_DISPATCH:
      return GivenConnection{.object = V_DISPATCH(plain)};
    case VT_UNKNOWN:
      return GivenConnection{.object = V_UNKNOWN(plain)};
    case VT_BYREF | VT_DISPATCH:
      return GivenConnection{.object = *V_DISPATCHREF(plain)};
    case VT_BYREF | VT_UNKNOWN:
      return GivenConnection{.object = *V_UNKNOWNREF(plain)};
    case VT_BSTR:
      return GivenConnection{.text = V_BSTR(plain)};
    case VT_BYREF | VT_BSTR:
      return GivenConnection{.text = *V_BSTRREF(plain)};
    default:
      return std::nullopt;
  }
}

}  // namespace

ErrorsObject* RecordsetObject::errorsForReport() {
  return connection_ ? connection_->errors().get() : nullptr;
}

void RecordsetObject::bind(ComPtr<ConnectionObject> connection, std::wstring_view source) {
  source_ = source;
  connection_ = std::move(connection);
  ownsConnection_ = false;
}

Outcome RecordsetObject::show(std::unique_ptr<store::RowSource> rows) {
  std::shared_ptr<Cursor> cursor;
  if (Outcome outcome = connection_->openCursor(std::move(rows), cursorType_, lockType_, &cursor); !outcome) {
    return outcome;
  }
  cursor_ = std::move(cursor);
  fields_ = {};
  return {};
}

Outcome RecordsetObject::refuseWhileOpen() const {
  if (openRecords() == nullptr) return {};
  return {kObjectOpen, "The recordset is open."};
}

Outcome RecordsetObject::chooseSource(const VARIANT& source, std::wstring* chosen) const {
  OwnedVariant holder;
  const VARIANT* plain = &source;
  if (!isMissing(source)) {
    if (Outcome outcome = plainVariant(source, &holder, &plain); !outcome) return outcome;
  }
  if (isMissing(*plain)) {
    *chosen = source_;
  } else if (V_VT(plain) == VT_BSTR) {
    *chosen = viewOf(V_BSTR(plain));
  } else {
    return {kInvalidArgument, "The source of a recordset is a text."};
  }
  return {};
}

Outcome RecordsetObject::setConnection(const VARIANT& given) {
  const std::optional<GivenConnection> named = connectionNamedBy(given);
  if (!named) return unusableConnection();
  ComPtr<ConnectionObject> connection;
  const bool own = named->text != nullptr;
  if (own) {
    connection = makeObject<ConnectionObject>();
    connection->setConnectionString(viewOf(named->text));
  } else if (named->object != nullptr) {
    connection = ConnectionObject::of(named->object);
    if (!connection) return unusableConnection();
  }
  connection_ = std::move(connection);
  ownsConnection_ = own;
  return {};
}

Outcome RecordsetObject::chooseConnection(const VARIANT& given) {
  if (!isMissing(given)) {
    if (Outcome outcome = setConnection(given); !outcome) return outcome;
  }
  if (ownsConnection_ && !connection_->isOpen()) return connection_->open();
  if (connection_ && connection_->isOpen()) return {};
  return {kInvalidConnection, "The recordset has no open connection."};
}

HRESULT RecordsetObject::Open(VARIANT source, VARIANT activeConnection, long cursorType, long lockType,
                              long options) {
  return call([&]() -> Outcome {
    if (Outcome outcome = refuseWhileOpen(); !outcome) return outcome;
    std::wstring text;
    if (Outcome outcome = chooseSource(source, &text); !outcome) return outcome;
    if (Outcome outcome = chooseConnection(activeConnection); !outcome) return outcome;
    if (cursorType != kLeftOut) cursorType_ = cursorTypeOf(cursorType);
    if (lockType != kLeftOut) lockType_ = lockTypeOf(lockType);
    Outcome outcome = openSource(text, options);
    // An own connection serves the open recordset only.
    if (ownsConnection_ && openRecords() == nullptr) connection_->close();
    return outcome;
  });
}

Outcome RecordsetObject::openSource(const std::wstring& source, long options) {
  source_ = source;
  CommandResult result;
  if (Outcome outcome = connection_->run(source, options, &result); !outcome) return outcome;
  if (result.rows == nullptr) return {};  // the statement was run, and has no records to show
  return show(std::move(result.rows));
}

HRESULT RecordsetObject::Close() {
  return call([&]() -> Outcome {
    if (openRecords() == nullptr) return closedRecordset();
    cursor_->close();
    cursor_.reset();
    fields_ = {};
    if (ownsConnection_) connection_->close();
    return {};
  });
}

HRESULT RecordsetObject::get_State(long* state) {
  return call([&]() -> Outcome {
    if (state == nullptr) return nullPointer();
    *state = openRecords() != nullptr ? kStateOpen : kStateClosed;
    return {};
  });
}

HRESULT RecordsetObject::get_ActiveConnection(VARIANT* connection) {
  return call([&]() -> Outcome {
    if (connection == nullptr) return nullPointer();
    V_VT(connection) = VT_DISPATCH;
    V_DISPATCH(connection) = ComPtr<IAdoceConnection>::share(connection_.get()).release();
    return {};
  });
}

HRESULT RecordsetObject::put_ActiveConnection(VARIANT connection) {
  return call([&]() -> Outcome {
    if (Outcome outcome = refuseWhileOpen(); !outcome) return outcome;
    return setConnection(connection);
  });
}

HRESULT RecordsetObject::putref_ActiveConnection(IDispatch* connection) {
  VARIANT given;
  V_VT(&given) = VT_DISPATCH;
  V_DISPATCH(&given) = connection;
  return put_ActiveConnection(given);
}

HRESULT RecordsetObject::get_Source(BSTR* source) {
  return call([&]() -> Outcome {
    if (source == nullptr) return nullPointer();
    *source = newText(source_);
    return {};
  });
}

HRESULT RecordsetObject::put_Source(BSTR source) {
  return call([&]() -> Outcome {
    if (Outcome outcome = refuseWhileOpen(); !outcome) return outcome;
    source_ = viewOf(source);
    return {};
  });
}

HRESULT RecordsetObject::get_CursorType(long* type) {
  return call([&]() -> Outcome {
    if (type == nullptr) return nullPointer();
    *type = static_cast<long>(cursorType_);
    return {};
  });
}

HRESULT RecordsetObject::put_CursorType(long type) {
  return call([&]() -> Outcome {
    if (Outcome outcome = refuseWhileOpen(); !outcome) return outcome;
    cursorType_ = cursorTypeOf(type);
    return {};
  });
}

HRESULT RecordsetObject::get_LockType(long* type) {
  return call([&]() -> Outcome {
    if (type == nullptr) return nullPointer();
    const store::Recordset* records = openRecords();
    *type = static_cast<long>(records != nullptr ? records->lockType() : lockType_);
    return {};
  });
}

HRESULT RecordsetObject::put_LockType(long type) {
  return call([&]() -> Outcome {
    if (Outcome outcome = refuseWhileOpen(); !outcome) return outcome;
    lockType_ = lockTypeOf(type);
    return {};
  });
}

}  // namespace automation
