#include "tests/ui/support/search_switch.h"

#include <objbase.h>

#include <algorithm>
#include <utility>

#include "gtest/gtest.h"

namespace {

/// What all of the objects have in common.
template <class Interface>
class PassingObject : public Interface {
 public:
  explicit PassingObject(ComPtr<Interface> real) : real_(std::move(real)) {}
  virtual ~PassingObject() = default;
  PassingObject(const PassingObject&) = delete;
  PassingObject& operator=(const PassingObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_IDispatch && id != __uuidof(Interface))
      return real_->QueryInterface(id, object);
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return real_->GetTypeInfoCount(count); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return real_->GetTypeInfo(index, locale, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* members) override {
    return real_->GetIDsOfNames(id, names, count, locale, members);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
    return real_->Invoke(member, id, locale, flags, arguments, result, exception, badArgument);
  }

 protected:
  ComPtr<Interface> real_;

 private:
  ULONG references_ = 1;
};

class SearchObject final : public PassingObject<IAdoceTextSearch> {
 public:
  SearchObject(SearchSwitch& owner, ComPtr<IAdoceTextSearch> real)
      : PassingObject(std::move(real)), switch_(owner) {}

  HRESULT STDMETHODCALLTYPE BeginTextSearch(BSTR text, VARIANT field, VARIANT_BOOL matchCase) override {
    return real_->BeginTextSearch(text, field, matchCase);
  }
  HRESULT STDMETHODCALLTYPE PassOver(long most, long milliseconds, long* passed) override {
    const HRESULT result = real_->PassOver(std::min(most, switch_.mostRecords),
                                           std::min(milliseconds, switch_.mostMilliseconds), passed);
    if (SUCCEEDED(result)) switch_.passedCount += *passed;
    return result;
  }
  HRESULT STDMETHODCALLTYPE EndTextSearch() override { return real_->EndTextSearch(); }

 private:
  SearchSwitch& switch_;
};

class RecordsetObject final : public PassingObject<IAdoceRecordset> {
 public:
  RecordsetObject(SearchSwitch& owner, ComPtr<IAdoceRecordset> real)
      : PassingObject(std::move(real)), switch_(owner) {}
  ~RecordsetObject() override { switch_.isGone(this); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (id != __uuidof(IAdoceTextSearch)) return PassingObject::QueryInterface(id, object);
    *object = nullptr;
    switch_.wasAsked(this);
    if (!switch_.isOn) {
      ++switch_.refusedCount;
      return E_NOINTERFACE;
    }
    ComPtr<IAdoceTextSearch> search;
    const HRESULT found = real_->QueryInterface(id, reinterpret_cast<void**>(search.put()));
    if (SUCCEEDED(found)) *object = static_cast<IAdoceTextSearch*>(new SearchObject(switch_, search));
    return found;
  }

  HRESULT STDMETHODCALLTYPE get_Fields(IAdoceFields** fields) override { return real_->get_Fields(fields); }
  HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT connection, LONG cursor, LONG lock,
                                 LONG options) override {
    return real_->Open(source, connection, cursor, lock, options);
  }
  HRESULT STDMETHODCALLTYPE Close() override { return real_->Close(); }
  HRESULT STDMETHODCALLTYPE MoveFirst() override { return real_->MoveFirst(); }
  HRESULT STDMETHODCALLTYPE MoveLast() override { return real_->MoveLast(); }
  HRESULT STDMETHODCALLTYPE MoveNext() override { return real_->MoveNext(); }
  HRESULT STDMETHODCALLTYPE MovePrevious() override { return real_->MovePrevious(); }
  HRESULT STDMETHODCALLTYPE Move(LONG count, VARIANT start) override { return real_->Move(count, start); }
  HRESULT STDMETHODCALLTYPE AddNew(VARIANT fields, VARIANT values) override {
    return real_->AddNew(fields, values);
  }
  HRESULT STDMETHODCALLTYPE Update(VARIANT fields, VARIANT values) override {
    return real_->Update(fields, values);
  }
  HRESULT STDMETHODCALLTYPE CancelUpdate() override { return real_->CancelUpdate(); }
  HRESULT STDMETHODCALLTYPE Delete(LONG records) override { return real_->Delete(records); }
  HRESULT STDMETHODCALLTYPE GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* values) override {
    return real_->GetRows(rows, start, fields, values);
  }
  HRESULT STDMETHODCALLTYPE Supports(LONG options, VARIANT_BOOL* supported) override {
    return real_->Supports(options, supported);
  }
  HRESULT STDMETHODCALLTYPE Clone(IAdoceRecordset** copy) override {
    ComPtr<IAdoceRecordset> real;
    const HRESULT result = real_->Clone(real.put());
    if (SUCCEEDED(result)) *copy = new RecordsetObject(switch_, std::move(real));
    return result;
  }
  HRESULT STDMETHODCALLTYPE get_AbsolutePosition(LONG* position) override {
    return real_->get_AbsolutePosition(position);
  }
  HRESULT STDMETHODCALLTYPE put_AbsolutePosition(LONG position) override {
    return real_->put_AbsolutePosition(position);
  }
  HRESULT STDMETHODCALLTYPE get_ActiveConnection(VARIANT* connection) override {
    return real_->get_ActiveConnection(connection);
  }
  HRESULT STDMETHODCALLTYPE put_ActiveConnection(VARIANT connection) override {
    return real_->put_ActiveConnection(connection);
  }
  HRESULT STDMETHODCALLTYPE putref_ActiveConnection(IDispatch* connection) override {
    return real_->putref_ActiveConnection(connection);
  }
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* isBof) override { return real_->get_BOF(isBof); }
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* isEof) override { return real_->get_EOF(isEof); }
  HRESULT STDMETHODCALLTYPE get_Bookmark(VARIANT* bookmark) override { return real_->get_Bookmark(bookmark); }
  HRESULT STDMETHODCALLTYPE put_Bookmark(VARIANT bookmark) override { return real_->put_Bookmark(bookmark); }
  HRESULT STDMETHODCALLTYPE get_CursorType(LONG* type) override { return real_->get_CursorType(type); }
  HRESULT STDMETHODCALLTYPE put_CursorType(LONG type) override { return real_->put_CursorType(type); }
  HRESULT STDMETHODCALLTYPE get_LockType(LONG* type) override { return real_->get_LockType(type); }
  HRESULT STDMETHODCALLTYPE put_LockType(LONG type) override { return real_->put_LockType(type); }
  HRESULT STDMETHODCALLTYPE get_EditMode(LONG* mode) override { return real_->get_EditMode(mode); }
  HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* count) override { return real_->get_RecordCount(count); }
  HRESULT STDMETHODCALLTYPE get_Source(BSTR* source) override { return real_->get_Source(source); }
  HRESULT STDMETHODCALLTYPE put_Source(BSTR source) override { return real_->put_Source(source); }
  HRESULT STDMETHODCALLTYPE get_State(LONG* state) override { return real_->get_State(state); }
  HRESULT STDMETHODCALLTYPE SaveField(VARIANT field, BSTR path) override {
    return real_->SaveField(field, path);
  }
  HRESULT STDMETHODCALLTYPE ReadAhead(LONG position, LONG count) override {
    return real_->ReadAhead(position, count);
  }

 private:
  SearchSwitch& switch_;
};

class Factory final : public IClassFactory {
 public:
  Factory(SearchSwitch& owner, ComPtr<IClassFactory> real) : switch_(owner), real_(std::move(real)) {}
  virtual ~Factory() = default;
  Factory(const Factory&) = delete;
  Factory& operator=(const Factory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    ComPtr<IAdoceRecordset> real;
    const HRESULT made =
        real_->CreateInstance(outer, __uuidof(IAdoceRecordset), reinterpret_cast<void**>(real.put()));
    if (FAILED(made)) return made;
    const ComPtr<IAdoceRecordset> recordset(new RecordsetObject(switch_, std::move(real)));
    return recordset->QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  SearchSwitch& switch_;
  ComPtr<IClassFactory> real_;
  ULONG references_ = 1;
};

}  // namespace

SearchSwitch::SearchSwitch() {
  // The class belongs to COM as the product initialises it, whichever test comes first.
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  CLSID classId = {};
  EXPECT_EQ(CLSIDFromProgID(L"ADOCE.Recordset.3.1", &classId), S_OK);
  ComPtr<IClassFactory> real;
  EXPECT_EQ(CoGetClassObject(classId, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                             reinterpret_cast<void**>(real.put())),
            S_OK);
  const ComPtr<IClassFactory> factory(new Factory(*this, std::move(real)));
  EXPECT_EQ(
      CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_),
      S_OK);
}

SearchSwitch::~SearchSwitch() {
  EXPECT_EQ(CoRevokeClassObject(registration_), S_OK);
  CoUninitialize();
}

long SearchSwitch::position() const {
  long position = 0;
  if (searched_ != nullptr) {
    EXPECT_EQ(searched_->get_AbsolutePosition(&position), S_OK);
  }
  return position;
}
