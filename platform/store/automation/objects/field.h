#pragma once

#include <adoce.h>
#include <cstddef>
#include <memory>
#include <utility>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/cursor.h"

namespace automation {

/// One field of whatever record of its cursor is current.
class FieldObject final : public AutomationObject<IAdoceField> {
 public:
  /// `column` is one of the cursor's.
  FieldObject(std::shared_ptr<Cursor> cursor, std::size_t column)
      : AutomationObject(kRecordsetSource), cursor_(std::move(cursor)), column_(column) {}

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) override;
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override;
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE get_Type(long* type) override;
  HRESULT STDMETHODCALLTYPE get_Attributes(long* attributes) override;
  HRESULT STDMETHODCALLTYPE get_DefinedSize(long* size) override;
  /// In bytes: of a text twice the UTF-16 units, of null 0.
  HRESULT STDMETHODCALLTYPE get_ActualSize(long* size) override;
  HRESULT STDMETHODCALLTYPE ReadBeginning(long mostBytes, VARIANT* value, hyper* length,
                                          hyper* fingerprint) override;
  HRESULT STDMETHODCALLTYPE ReadSeparated(BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_ReferencedTable(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE get_ReferencedField(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE ReadLiteral(long mostBytes, BSTR* text) override;

 protected:
  ErrorsObject* errorsForReport() override { return cursor_->errors().get(); }

 private:
  /// Runs `read` with the open records; fails when they are closed.
  template <class Read>
  HRESULT withRecords(Read&& read);

  std::shared_ptr<Cursor> cursor_;
  std::size_t column_;
};

}  // namespace automation
