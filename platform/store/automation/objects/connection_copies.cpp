// Former states of databases, an interface of its own.
#include <algorithm>
#include <chrono>
#include <utility>

#include "owners/com_handles.h"
#include "platform/store/automation/module/database_location.h"
#include "platform/store/automation/objects/connection.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/sqlite/copies/copy_folder.h"
#include "platform/store/sqlite/copies/going_back.h"
#include "platform/store/sqlite/copies/record_count.h"

namespace automation {

namespace {

constexpr hyper kNotCounted = -1;

std::string pathOf(BSTR text) {
  return utf8Of(fullPathOf(std::wstring(viewOf(text))));
}

/// Milliseconds since 1970 as COM counts days, from the end of 1899.
DATE dateOf(std::int64_t time) {
  constexpr double kDay = 24.0 * 60 * 60 * 1000;
  constexpr double kDaysBefore1970 = 25569;
  return static_cast<double>(time) / kDay + kDaysBefore1970;
}

void storeTexts(const std::vector<std::string>& texts, VARIANT* target) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size()));
  if (array == nullptr) throw std::bad_alloc();
  OwnedVariant variant;
  V_VT(variant.get()) = VT_ARRAY | VT_BSTR;
  V_ARRAY(variant.get()) = array;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const UniqueBstr text(newText(texts[index]));
    LONG place = static_cast<LONG>(index);
    if (FAILED(SafeArrayPutElement(array, &place, text.get()))) throw std::bad_alloc();
  }
  *target = variant.release();
}

}  // namespace

/// Runs the body of a method that needs the folder.
template <class Body>
HRESULT ConnectionObject::callWithCopies(Body&& body) noexcept {
  return call([&]() -> Outcome {
    if (copies_ == nullptr) return {kNotAvailable, "No copies are kept here."};
    return std::forward<Body>(body)();
  });
}

store::GoingBack ConnectionObject::goingBack() const {
  return {*copies_, userOptions().lockWait, question_};
}

HRESULT ConnectionObject::KeepCopies(BSTR folder) {
  return call([&]() -> Outcome {
    listedCopies_.clear();
    copies_.reset();
    if (!viewOf(folder).empty()) {
      copies_ = std::make_shared<store::CopyFolder>(store::CopySettings{.folder = pathOf(folder)});
    }
    return {};
  });
}

HRESULT ConnectionObject::TakeCopyFailure(BSTR* reason) {
  return call([&]() -> Outcome {
    if (reason == nullptr) return nullPointer();
    store::FormerStates* const states = isOpen() ? backend()->formerStates() : nullptr;
    *reason = newText(states != nullptr ? states->takeFailure().message() : std::string());
    return {};
  });
}

HRESULT ConnectionObject::KeepBeforeDeletion() {
  return callWithCopies([&]() -> Outcome {
    if (!isOpen()) return {kInvalidConnection, "The connection is closed."};
    store::FormerStates* const states = backend()->formerStates();
    if (backend()->isReadOnly()) return {};
    if (states == nullptr) return {kNotAvailable, "No copies are kept of this database."};
    return states->keepBeforeDeletion();
  });
}

HRESULT ConnectionObject::KeepDatabase(BSTR path) {
  return callWithCopies([&]() -> Outcome { return goingBack().keepBeforeDeletion(pathOf(path)); });
}

HRESULT ConnectionObject::ListDatabases(VARIANT* paths) {
  return callWithCopies([&]() -> Outcome {
    if (paths == nullptr) return nullPointer();
    storeTexts(copies_->databases(), paths);
    return {};
  });
}

HRESULT ConnectionObject::ListCopies(BSTR path, LONG* count) {
  return callWithCopies([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    listedCopies_ = copies_->copiesOf(pathOf(path));
    *count = static_cast<LONG>(listedCopies_.size());
    return {};
  });
}

HRESULT ConnectionObject::GetCopy(LONG index, BSTR* copy, DATE* time, hyper* bytes, hyper* records,
                                  LONG* reason) {
  return callWithCopies([&]() -> Outcome {
    if (copy == nullptr || time == nullptr || bytes == nullptr || records == nullptr || reason == nullptr) {
      return nullPointer();
    }
    if (index < 0 || static_cast<std::size_t>(index) >= listedCopies_.size()) {
      return {kItemNotFound, "There is no such copy."};
    }
    const store::KeptCopy& kept = listedCopies_[static_cast<std::size_t>(index)];
    *copy = newText(kept.path);
    *time = dateOf(kept.name.time);
    *bytes = kept.bytes;
    *records = kept.name.records.value_or(kNotCounted);
    *reason = static_cast<LONG>(kept.name.reason);
    return {};
  });
}

HRESULT ConnectionObject::IsCopy(BSTR path, VARIANT_BOOL* isCopy) {
  return call([&]() -> Outcome {
    if (isCopy == nullptr) return nullPointer();
    *isCopy = copies_ != nullptr && copies_->isCopy(pathOf(path)) ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

HRESULT ConnectionObject::PutBack(BSTR path, BSTR copy) {
  return callWithCopies([&]() -> Outcome { return goingBack().putBack(pathOf(path), pathOf(copy)); });
}

HRESULT ConnectionObject::ListMissingTables(BSTR path, BSTR copy, VARIANT* tables) {
  return callWithCopies([&]() -> Outcome {
    if (tables == nullptr) return nullPointer();
    std::vector<std::string> missing;
    const store::Status status = goingBack().listMissingTables(pathOf(path), pathOf(copy), &missing);
    if (!status) return status;
    storeTexts(missing, tables);
    return {};
  });
}

HRESULT ConnectionObject::PutTableBack(BSTR path, BSTR copy, BSTR table) {
  return callWithCopies([&]() -> Outcome {
    return goingBack().putTableBack(pathOf(path), pathOf(copy), utf8Of(viewOf(table)));
  });
}

HRESULT ConnectionObject::CountCopy(BSTR copy, LONG milliseconds, hyper* records) {
  return callWithCopies([&]() -> Outcome {
    if (records == nullptr) return nullPointer();
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(std::max(milliseconds, LONG{0}));
    *records = store::countRecords(pathOf(copy), [end] { return Clock::now() >= end; }).value_or(kNotCounted);
    return {};
  });
}

}  // namespace automation
