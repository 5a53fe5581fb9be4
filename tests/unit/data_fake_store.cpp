#include "tests/unit/data_fake_store.h"

#include <objbase.h>

#include <cstdio>

#include "gtest/gtest.h"

namespace {

std::string narrow(const wchar_t* text) {
  std::string narrowed;
  for (; text && *text; ++text) narrowed += static_cast<char>(*text);
  return narrowed;
}

/// The part of every object that the tests don't look at.
template <class Interface>
class FakeObject : public Interface {
 public:
  FakeObject() = default;
  virtual ~FakeObject() = default;
  FakeObject(const FakeObject&) = delete;
  FakeObject& operator=(const FakeObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch && id != __uuidof(Interface)) return E_NOINTERFACE;
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
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

 private:
  ULONG references_ = 1;
};

class FakeFieldObject final : public FakeObject<IAdoceField> {
 public:
  FakeFieldObject(FakeStore& store, std::size_t index) : store_(store), index_(index) {}

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) override {
    // A call that fails leaves something behind all the same, as no component should.
    const HRESULT copied = VariantCopy(value, const_cast<VARIANT*>(&field().value.get()));
    return FAILED(copied) ? copied : field().result;
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override {
    store_.calls.push_back("put " + std::to_string(index_) + " type " + std::to_string(value.vt));
    if (FAILED(field().result)) return field().result;
    return VariantCopy(field().value.put(), &value);
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* name) override {
    if (FAILED(field().result)) return field().result;
    *name = SysAllocString(field().name.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Type(LONG* type) override {
    *type = field().type;
    return field().result;
  }
  HRESULT STDMETHODCALLTYPE get_Attributes(LONG* attributes) override {
    *attributes = field().attributes;
    return field().result;
  }
  HRESULT STDMETHODCALLTYPE get_DefinedSize(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ActualSize(LONG*) override { return E_NOTIMPL; }
  /// Cuts nothing.
  HRESULT STDMETHODCALLTYPE ReadBeginning(LONG, VARIANT* value, hyper* length, hyper* fingerprint) override {
    *length = 0;
    *fingerprint = 0;
    return get_Value(value);
  }

 private:
  FakeField& field() { return store_.fields[index_]; }

  FakeStore& store_;
  std::size_t index_;
};

class FakeFieldsObject final : public FakeObject<IAdoceFields> {
 public:
  explicit FakeFieldsObject(FakeStore& store) : store_(store) {}

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoceField** field) override {
    EXPECT_EQ(index.vt, VT_I4);
    if (index.lVal < 0 || static_cast<std::size_t>(index.lVal) >= store_.fields.size()) return E_INVALIDARG;
    *field = new FakeFieldObject(store_, static_cast<std::size_t>(index.lVal));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override {
    *count = static_cast<LONG>(store_.fields.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown**) override { return E_NOTIMPL; }

 private:
  FakeStore& store_;
};

class FakeRecordsetObject final : public FakeObject<IAdoceRecordset> {
 public:
  explicit FakeRecordsetObject(FakeStore& store) : store_(store) { ++store_.recordsetsLive; }
  ~FakeRecordsetObject() override { --store_.recordsetsLive; }

  HRESULT STDMETHODCALLTYPE get_Fields(IAdoceFields** fields) override {
    if (FAILED(store_.fieldsResult)) return store_.fieldsResult;
    ++store_.fieldsFetched;
    *fields = new FakeFieldsObject(store_);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT activeConnection, LONG cursorType, LONG lockType,
                                 LONG options) override {
    EXPECT_EQ(source.vt, VT_BSTR);
    EXPECT_EQ(activeConnection.vt, VT_DISPATCH);
    std::string call = "Open " + narrow(source.bstrVal) + " cursor " + std::to_string(cursorType) + " lock " +
                       std::to_string(lockType) + " options " + std::to_string(options);
    if (!activeConnection.pdispVal) call += " without connection";
    store_.calls.push_back(call);
    return FAILED(store_.openResult) ? store_.openResult : store_.statementResult;
  }
  HRESULT STDMETHODCALLTYPE Close() override { return note("Close", S_OK); }
  HRESULT STDMETHODCALLTYPE MoveFirst() override { return note("MoveFirst", store_.moveResult); }
  HRESULT STDMETHODCALLTYPE MoveLast() override { return note("MoveLast", store_.moveResult); }
  HRESULT STDMETHODCALLTYPE MoveNext() override { return note("MoveNext", store_.moveResult); }
  HRESULT STDMETHODCALLTYPE MovePrevious() override { return note("MovePrevious", store_.moveResult); }
  HRESULT STDMETHODCALLTYPE Move(LONG count, VARIANT start) override {
    EXPECT_EQ(start.vt, VT_I4);
    return note("Move " + std::to_string(count) + " from " + std::to_string(start.lVal), store_.moveResult);
  }
  HRESULT STDMETHODCALLTYPE AddNew(VARIANT fieldList, VARIANT values) override {
    EXPECT_EQ(fieldList.vt, VT_EMPTY);
    EXPECT_EQ(values.vt, VT_EMPTY);
    return note("AddNew", store_.addNewResult);
  }
  HRESULT STDMETHODCALLTYPE Update(VARIANT fieldList, VARIANT values) override {
    EXPECT_EQ(fieldList.vt, VT_EMPTY);
    EXPECT_EQ(values.vt, VT_EMPTY);
    return note("Update", store_.updateResult);
  }
  HRESULT STDMETHODCALLTYPE CancelUpdate() override { return note("CancelUpdate", S_OK); }
  HRESULT STDMETHODCALLTYPE Delete(LONG affectRecords) override {
    return note("Delete " + std::to_string(affectRecords), S_OK);
  }
  HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* count) override {
    *count = store_.recordCount;
    return store_.recordCountResult;
  }
  HRESULT STDMETHODCALLTYPE GetRows(LONG, VARIANT, VARIANT, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Supports(LONG, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IAdoceRecordset** copy) override {
    *copy = new FakeRecordsetObject(store_);
    return note("Clone", S_OK);
  }
  HRESULT STDMETHODCALLTYPE get_AbsolutePosition(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_AbsolutePosition(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ActiveConnection(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ActiveConnection(VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE putref_ActiveConnection(IDispatch*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Bookmark(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Bookmark(VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CursorType(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_CursorType(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LockType(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LockType(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_EditMode(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Source(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Source(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_State(LONG*) override { return E_NOTIMPL; }

 private:
  HRESULT note(std::string call, HRESULT result) {
    store_.calls.push_back(std::move(call));
    return result;
  }

  FakeStore& store_;
};

class FakeConnectionObject final : public FakeObject<IAdoceConnection> {
 public:
  explicit FakeConnectionObject(FakeStore& store) : store_(store) {}

  HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ConnectionString(BSTR text) override {
    store_.calls.push_back("connection string " + narrow(text));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Provider(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Provider(BSTR name) override {
    store_.calls.push_back("provider " + narrow(name));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Open(BSTR text, BSTR user, BSTR password, LONG options) override {
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(user, nullptr);
    EXPECT_EQ(password, nullptr);
    store_.calls.push_back("connect options " + std::to_string(options));
    return store_.openResult;
  }
  HRESULT STDMETHODCALLTYPE Close() override {
    store_.calls.push_back("disconnect");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Execute(BSTR command, VARIANT* affected, LONG options,
                                    IAdoceRecordset** recordset) override {
    store_.calls.push_back("Execute " + narrow(command) + " options " + std::to_string(options));
    if (FAILED(store_.openResult)) return store_.openResult;
    affected->vt = VT_I4;
    affected->lVal = 7;
    *recordset = new FakeRecordsetObject(store_);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Errors(IAdoceErrors**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_State(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Version(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CheckFile() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SaveCopy(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AskWhileBusy(IDispatch*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stop() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ExportRows(BSTR, LONG, BSTR, BSTR, IDispatch*, hyper*, hyper*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE OpenImport(BSTR, IAdoceImport**) override { return E_NOTIMPL; }

 private:
  FakeStore& store_;
};

template <class Object>
class FakeFactory final : public IClassFactory {
 public:
  explicit FakeFactory(FakeStore& store) : store_(store) {}

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
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    const ComPtr<Object> made(new Object(store_));
    return made->QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  FakeStore& store_;
  ULONG references_ = 1;
};

template <class Object>
DWORD registerFake(const wchar_t* programId, FakeStore& store) {
  CLSID classId = {};
  EXPECT_EQ(CLSIDFromProgID(programId, &classId), S_OK);
  const ComPtr<IClassFactory> factory(new FakeFactory<Object>(store));
  DWORD cookie = 0;
  EXPECT_EQ(CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
            S_OK);
  return cookie;
}

}  // namespace

Variant asBoolean(bool value) {
  Variant variant;
  VARIANT* target = variant.put();
  target->vt = VT_BOOL;
  target->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}

ComPtr<IAdoceRecordset> makeFakeRecordset(FakeStore& store) {
  return ComPtr<IAdoceRecordset>(new FakeRecordsetObject(store));
}

ComPtr<IAdoceConnection> makeFakeConnection(FakeStore& store) {
  return ComPtr<IAdoceConnection>(new FakeConnectionObject(store));
}

FakeStoreRegistration::FakeStoreRegistration(FakeStore& store) {
  // The classes belong to COM as the product initialises it, whichever test comes first.
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  connectionClass_ = registerFake<FakeConnectionObject>(L"ADOCE.Connection.3.1", store);
  recordsetClass_ = registerFake<FakeRecordsetObject>(L"ADOCE.Recordset.3.1", store);
}

FakeStoreRegistration::~FakeStoreRegistration() {
  EXPECT_EQ(CoRevokeClassObject(connectionClass_), S_OK);
  EXPECT_EQ(CoRevokeClassObject(recordsetClass_), S_OK);
  CoUninitialize();
}
