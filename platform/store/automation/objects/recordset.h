#pragma once

#include <adoce.h>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/connection.h"
#include "platform/store/automation/objects/cursor.h"
#include "platform/store/automation/objects/fields.h"
#include "platform/store/rows/recordset.h"

namespace automation {

/// The records of a table or a statement. Opens again after Close, any number of times.
///
/// It works on a connection that a client gives, or on one of its own, made from a connection string,
/// which is open as long as the recordset is.
class RecordsetObject final : public AutomationObject<IAdoceRecordset>, public IAdoceTextSearch {
 public:
  RecordsetObject() : AutomationObject(kRecordsetSource) {}

  HRESULT STDMETHODCALLTYPE get_Fields(IAdoceFields** fields) override;
  HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT activeConnection, long cursorType, long lockType,
                                 long options) override;
  HRESULT STDMETHODCALLTYPE Close() override;
  HRESULT STDMETHODCALLTYPE MoveFirst() override;
  HRESULT STDMETHODCALLTYPE MoveLast() override;
  HRESULT STDMETHODCALLTYPE MoveNext() override;
  HRESULT STDMETHODCALLTYPE MovePrevious() override;
  HRESULT STDMETHODCALLTYPE Move(long count, VARIANT start) override;
  HRESULT STDMETHODCALLTYPE AddNew(VARIANT fieldList, VARIANT values) override;
  HRESULT STDMETHODCALLTYPE Update(VARIANT fieldList, VARIANT values) override;
  HRESULT STDMETHODCALLTYPE CancelUpdate() override;
  HRESULT STDMETHODCALLTYPE Delete(long affectRecords) override;
  HRESULT STDMETHODCALLTYPE GetRows(long rows, VARIANT start, VARIANT fields, VARIANT* values) override;
  HRESULT STDMETHODCALLTYPE Supports(long cursorOptions, VARIANT_BOOL* supported) override;
  HRESULT STDMETHODCALLTYPE Clone(IAdoceRecordset** copy) override;
  HRESULT STDMETHODCALLTYPE get_AbsolutePosition(long* position) override;
  HRESULT STDMETHODCALLTYPE put_AbsolutePosition(long position) override;
  HRESULT STDMETHODCALLTYPE get_ActiveConnection(VARIANT* connection) override;
  HRESULT STDMETHODCALLTYPE put_ActiveConnection(VARIANT connection) override;
  HRESULT STDMETHODCALLTYPE putref_ActiveConnection(IDispatch* connection) override;
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* bof) override;
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* eof) override;
  HRESULT STDMETHODCALLTYPE get_Bookmark(VARIANT* bookmark) override;
  HRESULT STDMETHODCALLTYPE put_Bookmark(VARIANT bookmark) override;
  HRESULT STDMETHODCALLTYPE get_CursorType(long* type) override;
  HRESULT STDMETHODCALLTYPE put_CursorType(long type) override;
  HRESULT STDMETHODCALLTYPE get_LockType(long* type) override;
  HRESULT STDMETHODCALLTYPE put_LockType(long type) override;
  HRESULT STDMETHODCALLTYPE get_EditMode(long* mode) override;
  HRESULT STDMETHODCALLTYPE get_RecordCount(long* count) override;
  HRESULT STDMETHODCALLTYPE get_Source(BSTR* source) override;
  HRESULT STDMETHODCALLTYPE put_Source(BSTR source) override;
  HRESULT STDMETHODCALLTYPE get_State(long* state) override;
  HRESULT STDMETHODCALLTYPE SaveField(VARIANT field, BSTR path) override;
  HRESULT STDMETHODCALLTYPE ReadAhead(long position, long count) override;

  // IAdoceTextSearch (recordset_search.cpp)
  HRESULT STDMETHODCALLTYPE BeginTextSearch(BSTR text, VARIANT field, VARIANT_BOOL matchCase) override;
  HRESULT STDMETHODCALLTYPE PassOver(long mostRecords, long milliseconds, long* passed) override;
  HRESULT STDMETHODCALLTYPE EndTextSearch() override;

  // What both interfaces have in common.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    return AutomationObject::QueryInterface(interfaceId, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AutomationObject::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return AutomationObject::Release(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return AutomationObject::GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return AutomationObject::GetTypeInfo(index, locale, info);
  }
  /// Knows the names of both interfaces.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID interfaceId) override;

  /// Also takes what scripts write as "recordset(index) = value": a put with an index in front.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

  // For the module's own objects, which hold the module's lock and hand failures on.

  /// The object behind an interface that a client passes; empty when it is none of this module's recordsets.
  static ComPtr<RecordsetObject> of(IUnknown* object);
  /// Null while it is closed.
  store::Recordset* records() const { return openRecords(); }
  bool isOn(const ConnectionObject& connection) const { return connection_.get() == &connection; }
  /// Makes `connection` the active one and `source` the source.
  void bind(ComPtr<ConnectionObject> connection, std::wstring_view source);
  /// Opens the rows, which the active connection gave, by the present cursor and lock types.
  Outcome show(std::unique_ptr<store::RowSource> rows);

 protected:
  ErrorsObject* errorsForReport() override;
  void* findOwnInterface(REFIID interfaceId) override;

 private:
  /// Runs `use` with the open records; fails when they are closed.
  template <class Use>
  HRESULT withRecords(Use&& use);
  /// The same after `read`, which looks at the arguments and may call objects of the caller's.
  template <class Read, class Use>
  HRESULT withRecords(Read&& read, Use&& use);

  static bool isOfTextSearch(DISPID member);
  HRESULT invokeTextSearch(DISPID member, REFIID reserved, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                           EXCEPINFO* exception, UINT* badArgument);

  store::Recordset* openRecords() const { return cursor_ == nullptr ? nullptr : cursor_->records(); }
  Outcome refuseWhileOpen() const;
  Outcome chooseSource(const VARIANT& source, std::wstring* chosen) const;
  Outcome chooseConnection(const VARIANT& given);
  Outcome setConnection(const VARIANT& given);
  Outcome openSource(const std::wstring& source, long options);

  std::wstring source_;
  ComPtr<ConnectionObject> connection_;
  bool ownsConnection_ = false;
  store::CursorType cursorType_ = store::CursorType::forwardOnly;  // as asked for
  store::LockType lockType_ = store::LockType::readOnly;           // as asked for
  std::shared_ptr<Cursor> cursor_;
  ComPtr<FieldsObject> fields_;  // of the open cursor, made when first asked for
};

template <class Use>
HRESULT RecordsetObject::withRecords(Use&& use) {
  return call([&]() -> Outcome {
    store::Recordset* records = openRecords();
    if (records == nullptr) return closedRecordset();
    return use(*records);
  });
}

template <class Read, class Use>
HRESULT RecordsetObject::withRecords(Read&& read, Use&& use) {
  return call([&]() -> Outcome {
    if (openRecords() == nullptr) return closedRecordset();
    if (Outcome outcome = read(); !outcome) return outcome;
    // Only now, because an object that was asked for its value may have closed or reopened the records.
    store::Recordset* records = openRecords();
    if (records == nullptr) return closedRecordset();
    return use(*records);
  });
}

}  // namespace automation
