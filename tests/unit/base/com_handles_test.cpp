#include "owners/com_handles.h"

#include <utility>

#include "base/variant.h"
#include "gtest/gtest.h"

namespace {

/// Counts its references; it lives on the stack and is never deleted.
class FakeDispatch final : public IDispatch {
 public:
  ULONG references = 1;

  virtual ~FakeDispatch() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_IDispatch) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
};

TEST(ComPtrTest, TakesOverAPlainPointerAndReleasesItOnce) {
  FakeDispatch object;
  {
    const ComPtr<IDispatch> pointer(&object);
    EXPECT_EQ(object.references, 1u);
    EXPECT_EQ(LiveResources::count(ResourceKind::comPointer), 1);
  }
  EXPECT_EQ(object.references, 0u);
  EXPECT_EQ(LiveResources::count(ResourceKind::comPointer), 0);
}

TEST(ComPtrTest, SharingAddsAReference) {
  FakeDispatch object;
  {
    const auto pointer = ComPtr<IDispatch>::share(&object);
    EXPECT_EQ(object.references, 2u);
  }
  EXPECT_EQ(object.references, 1u);
  EXPECT_FALSE(ComPtr<IDispatch>::share(nullptr));
}

TEST(ComPtrTest, MovingKeepsTheCount) {
  FakeDispatch object;
  auto first = ComPtr<IDispatch>::share(&object);
  ComPtr<IDispatch> second(std::move(first));
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): that is the promise
  first = std::move(second);
  EXPECT_EQ(object.references, 2u);
  first.reset();
  EXPECT_EQ(object.references, 1u);
}

TEST(ComPtrTest, QueryGivesTheOtherInterface) {
  FakeDispatch object;
  {
    const auto pointer = ComPtr<IUnknown>::share(&object);
    ComPtr<IDispatch> dispatch;
    EXPECT_EQ(pointer.query(dispatch), S_OK);
    EXPECT_EQ(dispatch.get(), &object);
    EXPECT_EQ(object.references, 3u);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(ComPtrTest, AFailedQueryLeavesTheTarget) {
  FakeDispatch object;
  FakeDispatch other;
  const auto pointer = ComPtr<IUnknown>::share(&object);
  auto stream = ComPtr<IStream>(reinterpret_cast<IStream*>(&other));
  EXPECT_EQ(pointer.query(stream), E_NOINTERFACE);
  EXPECT_EQ(stream.get(), reinterpret_cast<IStream*>(&other));
  EXPECT_EQ(other.references, 1u);
  EXPECT_EQ(object.references, 2u);
}

TEST(BstrTest, IsFreedAndCounted) {
  {
    UniqueBstr text;
    *text.put() = SysAllocString(L"abc");
    EXPECT_EQ(SysStringLen(text.get()), 3u);
    EXPECT_EQ(LiveResources::count(ResourceKind::bstr), 1);
  }
  EXPECT_EQ(LiveResources::count(ResourceKind::bstr), 0);
}

TEST(VariantTest, BeginsEmpty) {
  const Variant variant;
  EXPECT_EQ(variant.type(), VT_EMPTY);
  EXPECT_EQ(LiveResources::count(ResourceKind::variant), 1);
}

TEST(VariantTest, IsMadeFromValues) {
  EXPECT_EQ(Variant::fromLong(-7).get().lVal, -7);
  EXPECT_EQ(Variant::fromLong(-7).type(), VT_I4);
  EXPECT_EQ(Variant::fromDate(36959.5).get().date, 36959.5);
  EXPECT_EQ(Variant::fromDate(36959.5).type(), VT_DATE);
  const Variant text = Variant::fromText(L"abc");
  EXPECT_EQ(text.type(), VT_BSTR);
  EXPECT_STREQ(text.get().bstrVal, L"abc");
}

TEST(VariantTest, NullTextIsTheEmptyText) {
  const Variant text = Variant::fromText(nullptr);
  EXPECT_EQ(text.type(), VT_BSTR);
  ASSERT_NE(text.get().bstrVal, nullptr);
  EXPECT_STREQ(text.get().bstrVal, L"");
}

TEST(VariantTest, HoldsAReferenceToAnObject) {
  FakeDispatch object;
  {
    const Variant variant = Variant::fromDispatch(&object);
    EXPECT_EQ(variant.type(), VT_DISPATCH);
    EXPECT_EQ(object.references, 2u);
  }
  EXPECT_EQ(object.references, 1u);
  EXPECT_EQ(Variant::fromDispatch(nullptr).get().pdispVal, nullptr);
}

TEST(VariantTest, ClearFreesTheContent) {
  FakeDispatch object;
  Variant variant = Variant::fromDispatch(&object);
  variant.clear();
  EXPECT_EQ(variant.type(), VT_EMPTY);
  EXPECT_EQ(object.references, 1u);
}

TEST(VariantTest, PutClearsFirstAndOwnsWhatComes) {
  FakeDispatch object;
  {
    Variant variant = Variant::fromDispatch(&object);
    VARIANT* const place = variant.put();
    EXPECT_EQ(object.references, 1u);
    EXPECT_EQ(place->vt, VT_EMPTY);
    object.AddRef();
    place->vt = VT_DISPATCH;
    place->pdispVal = &object;
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(VariantTest, MovingHandsTheContentOver) {
  FakeDispatch object;
  Variant first = Variant::fromDispatch(&object);
  Variant second(std::move(first));
  // What is moved from is empty: that is the promise.
  EXPECT_EQ(first.type(), VT_EMPTY);  // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  first = std::move(second);
  EXPECT_EQ(first.type(), VT_DISPATCH);
  EXPECT_EQ(second.type(), VT_EMPTY);  // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  EXPECT_EQ(object.references, 2u);
  first = Variant::fromLong(1);
  EXPECT_EQ(object.references, 1u);
}

TEST(VariantTest, ConvertsToAnotherType) {
  const Variant number = Variant::fromLong(42);
  Variant text;
  EXPECT_EQ(number.convertTo(VT_BSTR, text), S_OK);
  EXPECT_STREQ(text.get().bstrVal, L"42");
  EXPECT_EQ(text.convertTo(VT_I4, text), S_OK) << "the target may be the source";
  EXPECT_EQ(text.get().lVal, 42);
}

TEST(VariantTest, AFailedConversionLeavesTheTarget) {
  const Variant text = Variant::fromText(L"no number");
  Variant target = Variant::fromLong(7);
  EXPECT_EQ(text.convertTo(VT_I4, target), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(target.type(), VT_I4);
  EXPECT_EQ(target.get().lVal, 7);
}

TEST(VariantTest, NoneIsLeftAlive) {
  EXPECT_EQ(LiveResources::count(ResourceKind::variant), 0);
}

}  // namespace
