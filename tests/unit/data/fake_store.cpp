#include "tests/unit/data/fake_store.h"

#include <objbase.h>

#include <algorithm>
#include <utility>

#include "gtest/gtest.h"

namespace {

std::string narrow(const wchar_t* text) {
  std::string narrowed;
  for (; text && *text; ++text) narrowed += static_cast<char>(*text);
  return narrowed;
}

Variant copyOf(const Variant& value) {
  Variant copy;
  EXPECT_EQ(VariantCopy(copy.put(), const_cast<VARIANT*>(&value.get())), S_OK);
  return copy;
}

/// Behind a statement: to what the connection leads.
std::string placeOf(const FakeStore& store) {
  if (!store.isConnected) return "";
  return " in " + (store.connectedTo.empty() ? "the store" : store.connectedTo);
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
  FakeFieldObject(FakeStore& store, std::shared_ptr<FakeCursor> cursor, std::size_t index)
      : store_(store), cursor_(std::move(cursor)), index_(index) {}

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) override {
    const FakeRow* const row = currentRow();
    if (!row) return E_FAIL;
    // A call that fails leaves something behind all the same, as no component should.
    const HRESULT copied = VariantCopy(value, const_cast<VARIANT*>(&row->at(index_).get()));
    return FAILED(copied) ? copied : field().result;
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override {
    if (FAILED(field().result)) return field().result;
    const FakeRow* const row = currentRow();
    if (!row) return E_FAIL;
    if (cursor_->written.empty()) {
      for (const Variant& each : *row) cursor_->written.push_back(copyOf(each));
    }
    return VariantCopy(cursor_->written.at(index_).put(), &value);
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
  HRESULT STDMETHODCALLTYPE ReadSeparated(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ReferencedTable(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ReferencedField(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadLiteral(LONG, BSTR*) override { return E_NOTIMPL; }

 private:
  FakeField& field() { return store_.fields[index_]; }
  /// Null where there is none.
  const FakeRow* currentRow() const {
    if (!cursor_->written.empty()) return &cursor_->written;
    const auto index = static_cast<std::size_t>(cursor_->position - 1);
    return cursor_->position >= 1 && index < store_.rows.size() ? &store_.rows[index] : nullptr;
  }

  FakeStore& store_;
  std::shared_ptr<FakeCursor> cursor_;
  std::size_t index_;
};

class FakeFieldsObject final : public FakeObject<IAdoceFields> {
 public:
  FakeFieldsObject(FakeStore& store, std::shared_ptr<FakeCursor> cursor)
      : store_(store), cursor_(std::move(cursor)) {}

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoceField** field) override {
    EXPECT_EQ(index.vt, VT_I4);
    if (index.lVal < 0 || static_cast<std::size_t>(index.lVal) >= store_.fields.size()) return E_INVALIDARG;
    *field = new FakeFieldObject(store_, cursor_, static_cast<std::size_t>(index.lVal));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override {
    *count = static_cast<LONG>(store_.fields.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown**) override { return E_NOTIMPL; }

 private:
  FakeStore& store_;
  std::shared_ptr<FakeCursor> cursor_;
};

class FakeRecordsetObject final : public FakeObject<IAdoceRecordset> {
 public:
  explicit FakeRecordsetObject(FakeStore& store, bool isOpen = false) : store_(store) {
    store_.cursors.push_back(cursor_);
    if (isOpen) begin();
  }
  ~FakeRecordsetObject() override { std::erase(store_.cursors, cursor_); }

  HRESULT STDMETHODCALLTYPE get_Fields(IAdoceFields** fields) override {
    if (FAILED(store_.fieldsResult)) return store_.fieldsResult;
    ++store_.fieldsFetched;
    *fields = new FakeFieldsObject(store_, cursor_);
    return S_OK;
  }
  /// Refused while it is open, as the real one does.
  HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT activeConnection, LONG cursorType, LONG lockType,
                                 LONG options) override {
    EXPECT_EQ(source.vt, VT_BSTR);
    EXPECT_EQ(activeConnection.vt, VT_DISPATCH);
    if (cursor_->isOpen) return E_FAIL;
    store_.statements.push_back("Open " + narrow(source.bstrVal) + " cursor " + std::to_string(cursorType) +
                                " lock " + std::to_string(lockType) + " options " + std::to_string(options) +
                                (activeConnection.pdispVal ? placeOf(store_) : " without connection"));
    const HRESULT result = FAILED(store_.openResult) ? store_.openResult : store_.statementResult;
    if (SUCCEEDED(result)) begin();
    return result;
  }
  HRESULT STDMETHODCALLTYPE Close() override {
    *cursor_ = {};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE MoveFirst() override { return moveTo(1); }
  HRESULT STDMETHODCALLTYPE MoveLast() override { return moveTo(rowCount()); }
  HRESULT STDMETHODCALLTYPE MoveNext() override { return moveTo(cursor_->position + 1); }
  HRESULT STDMETHODCALLTYPE MovePrevious() override { return moveTo(cursor_->position - 1); }
  HRESULT STDMETHODCALLTYPE Move(LONG count, VARIANT start) override {
    constexpr LONG kFromCurrent = 0;
    constexpr LONG kFromFirst = 1;
    EXPECT_EQ(start.vt, VT_I4);
    EXPECT_TRUE(start.lVal == kFromCurrent || start.lVal == kFromFirst) << start.lVal;
    cursor_->wasMovedFromFirst = start.lVal == kFromFirst;
    return moveTo((start.lVal == kFromFirst ? 1 : cursor_->position) + count);
  }
  HRESULT STDMETHODCALLTYPE AddNew(VARIANT fieldList, VARIANT values) override {
    EXPECT_EQ(fieldList.vt, VT_EMPTY);
    EXPECT_EQ(values.vt, VT_EMPTY);
    if (FAILED(store_.addNewResult)) return store_.addNewResult;
    if (!cursor_->isOpen) return E_FAIL;
    cursor_->isAdding = true;
    cursor_->position = rowCount() + 1;
    cursor_->written.clear();
    for (std::size_t i = 0; i < store_.fields.size(); ++i) cursor_->written.emplace_back();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Update(VARIANT fieldList, VARIANT values) override {
    EXPECT_EQ(fieldList.vt, VT_EMPTY);
    EXPECT_EQ(values.vt, VT_EMPTY);
    if (FAILED(store_.updateResult)) return store_.updateResult;
    if (cursor_->isAdding) {
      store_.rows.push_back(std::move(cursor_->written));
    } else if (!cursor_->written.empty()) {
      store_.rows.at(static_cast<std::size_t>(cursor_->position - 1)) = std::move(cursor_->written);
    }
    cursor_->written.clear();
    cursor_->isAdding = false;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE CancelUpdate() override {
    if (cursor_->isAdding) --cursor_->position;
    cursor_->isAdding = false;
    cursor_->written.clear();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Delete(LONG affectRecords) override {
    constexpr LONG kCurrentOnly = 1;
    EXPECT_EQ(affectRecords, kCurrentOnly);
    if (cursor_->position < 1 || cursor_->position > rowCount()) return E_FAIL;
    store_.rows.erase(store_.rows.begin() + (cursor_->position - 1));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* count) override {
    *count = rowCount();
    return store_.recordCountResult;
  }
  HRESULT STDMETHODCALLTYPE GetRows(LONG, VARIANT, VARIANT, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Supports(LONG, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IAdoceRecordset** copy) override {
    *copy = new FakeRecordsetObject(store_, cursor_->isOpen);
    return S_OK;
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
  HRESULT STDMETHODCALLTYPE SaveField(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadAhead(long, long) override { return S_OK; }

 private:
  LONG rowCount() const { return static_cast<LONG>(store_.rows.size()); }
  void begin() {
    cursor_->isOpen = true;
    cursor_->position = 1;
  }
  HRESULT moveTo(LONG position) {
    if (!cursor_->isOpen) return E_FAIL;
    if (FAILED(store_.moveResult)) {
      cursor_->position = cursor_->position % std::max(rowCount(), 1L) + 1;
      return store_.moveResult;
    }
    cursor_->position = std::clamp(position, 0L, rowCount() + 1);
    return store_.moveResult;
  }

  FakeStore& store_;
  std::shared_ptr<FakeCursor> cursor_ = std::make_shared<FakeCursor>();
};

class FakeConnectionObject final : public FakeObject<IAdoceConnection> {
 public:
  explicit FakeConnectionObject(FakeStore& store) : store_(store) {}

  HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ConnectionString(BSTR text) override {
    store_.connectionString = narrow(text);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Provider(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Provider(BSTR name) override {
    store_.provider = narrow(name);
    return S_OK;
  }
  /// Refused while it is open, as the real one does.
  HRESULT STDMETHODCALLTYPE Open(BSTR text, BSTR user, BSTR password, LONG options) override {
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(user, nullptr);
    EXPECT_EQ(password, nullptr);
    if (store_.isConnected) return E_FAIL;
    if (FAILED(store_.openResult)) return store_.openResult;
    store_.isConnected = true;
    store_.connectedTo = store_.connectionString;
    store_.connectOptions = options;
    return store_.openResult;
  }
  HRESULT STDMETHODCALLTYPE Close() override {
    store_.isConnected = false;
    store_.connectedTo.clear();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Execute(BSTR command, VARIANT* affected, LONG options,
                                    IAdoceRecordset** recordset) override {
    store_.statements.push_back("Execute " + narrow(command) + " options " + std::to_string(options) +
                                placeOf(store_));
    if (FAILED(store_.openResult)) return store_.openResult;
    affected->vt = VT_I4;
    affected->lVal = 7;
    *recordset = new FakeRecordsetObject(store_, true);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Errors(IAdoceErrors**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_State(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Version(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CheckFile() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SaveCopy(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AskWhileBusy(IDispatch*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stop() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TryWriting() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ExportRows(BSTR, LONG, BSTR, BSTR path, IDispatch*, hyper* changed,
                                       hyper* count) override {
    store_.statements.push_back("Export to " + narrow(path));
    *changed = 1;
    *count = 3;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OpenImport(BSTR, IAdoceImport**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ExportFormat(BSTR, BSTR* name) override {
    if (FAILED(store_.exportFormatResult)) return store_.exportFormatResult;
    *name = SysAllocString(L"csv");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE CountOthersChanges(hyper*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DescribeServer(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsServers(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TakeRefusal(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GivePassword(BSTR) override { return E_NOTIMPL; }

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

void FakeStore::addField(FakeField field, Variant value) {
  fields.push_back(std::move(field));
  if (rows.empty()) rows.emplace_back();
  rows.front().push_back(std::move(value));
}

const Variant& FakeStore::value(std::size_t field) const {
  const FakeCursor& cursor = *cursors.front();
  if (!cursor.written.empty()) return cursor.written.at(field);
  return rows.at(static_cast<std::size_t>(cursor.position - 1)).at(field);
}

std::wstring FakeStore::storedText(std::size_t row, std::size_t field) const {
  const Variant& stored = rows.at(row).at(field);
  EXPECT_EQ(stored.type(), VT_BSTR);
  return stored.type() == VT_BSTR ? stored.get().bstrVal : L"";
}

int FakeStore::openCursorCount() const {
  return static_cast<int>(
      std::count_if(cursors.begin(), cursors.end(), [](const auto& each) { return each->isOpen; }));
}

Variant asBoolean(bool value) {
  Variant variant;
  VARIANT* target = variant.put();
  target->vt = VT_BOOL;
  target->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}

ComPtr<IAdoceRecordset> makeFakeRecordset(FakeStore& store) {
  return ComPtr<IAdoceRecordset>(new FakeRecordsetObject(store, true));
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
