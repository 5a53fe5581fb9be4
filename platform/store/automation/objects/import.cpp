#include "platform/store/automation/objects/import.h"

#include <algorithm>
#include <utility>

#include "platform/store/automation/module/database_location.h"
#include "platform/store/automation/objects/busy_question.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/exchange/bytes/output_file.h"
#include "platform/store/rows/utf.h"

namespace automation {

namespace exchange = store::exchange;

namespace {

constexpr long kFindOut = -1;
constexpr long kEncodingInDoubt = 1;
constexpr long kHeaderInDoubt = 2;
constexpr std::wstring_view kCsv = L"csv";
constexpr std::wstring_view kJson = L"json";
constexpr std::size_t kMostRejects = 1000;
constexpr std::size_t kMostPreviewBytes = 200;

Outcome notExamined() {
  return {objectModelError(3219), "The file was not examined yet."};
}

VARIANT_BOOL truth(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

/// A table of texts, the columns first.
class TextArray {
 public:
  TextArray(std::size_t columns, std::size_t records) {
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(columns), 0}, {static_cast<ULONG>(records), 0}};
    array_ = SafeArrayCreate(VT_BSTR, 2, bounds);
    if (array_ == nullptr) throw std::bad_alloc();
    SafeArrayAccessData(array_, reinterpret_cast<void**>(&texts_));
  }
  ~TextArray() {
    if (array_ == nullptr) return;
    SafeArrayUnaccessData(array_);
    SafeArrayDestroy(array_);
  }
  TextArray(const TextArray&) = delete;
  TextArray& operator=(const TextArray&) = delete;

  void set(std::size_t place, std::string_view text) { texts_[place] = newText(text); }
  /// Hands the array to the caller.
  void moveTo(VARIANT* variant) {
    SafeArrayUnaccessData(array_);
    V_VT(variant) = VT_ARRAY | VT_BSTR;
    V_ARRAY(variant) = std::exchange(array_, nullptr);
  }

 private:
  SAFEARRAY* array_ = nullptr;
  BSTR* texts_ = nullptr;
};

}  // namespace

/// Asks the client and notes what can't be taken.
class ImportObject::Observer final : public exchange::ImportObserver {
 public:
  explicit Observer(IDispatch* question) : question_(ComPtr<IDispatch>::share(question)) {}

  bool goesOn(bool isStoring, std::int64_t bytesDone, std::int64_t bytesTotal) override {
    return question_.goesOn(isStoring ? Moving::storing : Moving::looking, bytesDone, bytesTotal);
  }
  store::Status rejected(const exchange::Record& record, const std::string& reason) override {
    if (rejects.size() < kMostRejects) rejects.push_back({record.line, reason});
    list.add(record, reason);
    return {};
  }

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes): what came of it
  std::vector<Reject> rejects;
  exchange::RejectList list;
  // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  ProgressQuestion question_;
};

ImportObject::ImportObject(ComPtr<ConnectionObject> connection, std::unique_ptr<exchange::ByteSource> source,
                           std::string path, std::string table)
    : AutomationObject(kConnectionSource),
      connection_(std::move(connection)),
      source_(std::move(source)),
      path_(std::move(path)) {
  options_.table = std::move(table);
  options_.skipsUnknown = true;
}

// ---- What is chosen

HRESULT ImportObject::get_Table(BSTR* name) {
  return call([&]() -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(options_.table);
    return {};
  });
}

HRESULT ImportObject::put_Table(BSTR name) {
  return call([&]() -> Outcome {
    std::string table = utf8Of(viewOf(name));
    if (table != options_.table) key_.reset();
    options_.table = std::move(table);
    return {};
  });
}

HRESULT ImportObject::get_Encoding(BSTR* name) {
  return call([&]() -> Outcome {
    if (name == nullptr) return nullPointer();
    const auto encoding = options_.encoding ? options_.encoding
                          : plan_           ? std::optional(plan_->encoding)
                                            : std::nullopt;
    *name = newText(encoding ? exchange::nameOf(*encoding) : std::string_view());
    return {};
  });
}

HRESULT ImportObject::put_Encoding(BSTR name) {
  return call([&]() -> Outcome {
    const std::string text = utf8Of(viewOf(name));
    const auto encoding = exchange::encodingOf(text);
    if (!text.empty() && !encoding) return {kInvalidArgument, "There is no encoding called " + text + "."};
    options_.encoding = encoding;
    return {};
  });
}

HRESULT ImportObject::get_Delimiter(BSTR* character) {
  return call([&]() -> Outcome {
    if (character == nullptr) return nullPointer();
    std::string text;
    const bool isJson = plan_ && plan_->isJson;
    if (options_.separator && !isJson) {
      text = *options_.separator;
    } else if (plan_ && !isJson) {
      text = plan_->csv.separator;
    }
    *character = newText(std::string_view(text));
    return {};
  });
}

HRESULT ImportObject::put_Delimiter(BSTR character) {
  return call([&]() -> Outcome {
    const std::string text = utf8Of(viewOf(character));
    const bool isOne = text.size() == 1 && text != "\"" && text != "\r" && text != "\n" && text[0] > 0;
    if (!text.empty() && !isOne) return {kInvalidArgument, "\"" + text + "\" can't part fields."};
    options_.separator = text.empty() ? std::nullopt : std::optional(text[0]);
    return {};
  });
}

HRESULT ImportObject::get_Header(long* header) {
  return call([&]() -> Outcome {
    if (header == nullptr) return nullPointer();
    if (options_.hasHeader) {
      *header = *options_.hasHeader ? 1 : 0;
    } else {
      *header = !plan_ ? kFindOut : plan_->csv.hasHeader ? 1 : 0;
    }
    return {};
  });
}

HRESULT ImportObject::put_Header(long header) {
  return call([&]() -> Outcome {
    if (header < kFindOut || header > 1) return {kInvalidArgument, "A header is -1, 0 or 1."};
    options_.hasHeader = header == kFindOut ? std::nullopt : std::optional(header == 1);
    return {};
  });
}

HRESULT ImportObject::get_Replaces(VARIANT_BOOL* replaces) {
  return call([&]() -> Outcome {
    if (replaces == nullptr) return nullPointer();
    *replaces = truth(options_.replaces);
    return {};
  });
}

HRESULT ImportObject::put_Replaces(VARIANT_BOOL replaces) {
  return call([&]() -> Outcome {
    options_.replaces = replaces != VARIANT_FALSE;
    return {};
  });
}

HRESULT ImportObject::get_Format(BSTR* name) {
  return call([&]() -> Outcome {
    if (name == nullptr) return nullPointer();
    const auto isJson = options_.isJson ? options_.isJson
                        : plan_         ? std::optional(plan_->isJson)
                                        : std::nullopt;
    *name = newText(!isJson ? std::wstring_view() : *isJson ? kJson : kCsv);
    return {};
  });
}

HRESULT ImportObject::put_Format(BSTR name) {
  return call([&]() -> Outcome {
    const std::wstring_view text = viewOf(name);
    if (!text.empty() && text != kCsv && text != kJson) {
      return {kInvalidArgument, "There is no format called " + utf8Of(text) + "."};
    }
    options_.isJson = text.empty() ? std::nullopt : std::optional(text == kJson);
    return {};
  });
}

HRESULT ImportObject::get_NullText(BSTR* text) {
  return call([&]() -> Outcome {
    if (text == nullptr) return nullPointer();
    *text = newText(std::string_view(options_.nullText));
    return {};
  });
}

HRESULT ImportObject::put_NullText(BSTR text) {
  return call([&]() -> Outcome {
    options_.nullText = utf8Of(viewOf(text));
    return {};
  });
}

// ---- What is found out

Outcome ImportObject::openBackend(store::Backend** backend) const {
  *backend = connection_->backend();
  if (*backend == nullptr) return {kInvalidConnection, "The connection is closed."};
  return {};
}

HRESULT ImportObject::Examine(IDispatch* question) {
  return call([&] { return examine(question); });
}

Outcome ImportObject::examine(IDispatch* question) {
  store::Backend* backend = nullptr;
  if (Outcome outcome = openBackend(&backend); !outcome) return outcome;
  Observer observer(question);
  exchange::ImportPlan plan;
  exchange::ImportOptions options = options_;
  if (key_) options.keyColumns = *key_;
  if (store::Status status = exchange::planImport(*backend, *source_, options, observer, &plan); !status) {
    return status;
  }
  std::vector<ColumnChoice> columns;
  for (const std::string& name : plan.fileColumns) {
    columns.emplace_back();
    columns.back().name = name;
  }
  for (std::size_t index = 0; index < plan.columns.size(); ++index) {
    ColumnChoice& column = columns[plan.columns[index].sourceIndex];
    column.planned = index;
    column.hasPlace = true;
  }
  keepChoices(columns, plan);
  if (key_ && key_->empty()) key_.reset();
  columns_ = std::move(columns);
  plan_ = std::move(plan);
  rejects_.clear();
  rejectList_ = {};
  return {};
}

/// The choices of a user who then names another table, say, are the same there.
void ImportObject::keepChoices(std::vector<ColumnChoice>& columns, exchange::ImportPlan& plan) const {
  for (std::size_t index = 0; index < std::min(columns.size(), columns_.size()); ++index) {
    const ColumnChoice& former = columns_[index];
    ColumnChoice& column = columns[index];
    if (!column.hasPlace || column.name != former.name) continue;
    column.isLeftOut = former.isLeftOut;
    column.type = former.type;
    // A table that is there keeps its own types.
    if (column.type.empty() || !plan.isNewTable) continue;
    if (!exchange::setColumnType(plan, column.planned, column.type)) column.type.clear();
  }
}

HRESULT ImportObject::get_IsNewTable(VARIANT_BOOL* isNew) {
  return call([&]() -> Outcome {
    if (isNew == nullptr) return nullPointer();
    if (!plan_) return notExamined();
    *isNew = truth(plan_->isNewTable);
    return {};
  });
}

HRESULT ImportObject::get_ColumnCount(long* count) {
  return call([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    if (!plan_) return notExamined();
    *count = static_cast<long>(columns_.size());
    return {};
  });
}

Outcome ImportObject::find(long index, ColumnChoice** column) {
  if (!plan_) return notExamined();
  if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) {
    return {kItemNotFound, "The file has no column " + std::to_string(index) + "."};
  }
  *column = &columns_[static_cast<std::size_t>(index)];
  return {};
}

HRESULT ImportObject::GetColumn(long index, BSTR* source, BSTR* target, BSTR* type) {
  return call([&]() -> Outcome {
    if (source == nullptr || target == nullptr || type == nullptr) return nullPointer();
    ColumnChoice* column = nullptr;
    if (Outcome outcome = find(index, &column); !outcome) return outcome;
    const exchange::PlannedColumn none;
    const exchange::PlannedColumn& planned = column->hasPlace ? plan_->columns[column->planned] : none;
    UniqueBstr sourceName(newText(column->name));
    UniqueBstr targetName(newText(column->isLeftOut ? none.target : planned.target));
    *type = newText(planned.declaredType);
    *source = sourceName.release();
    *target = targetName.release();
    return {};
  });
}

HRESULT ImportObject::SetColumn(long index, BSTR type) {
  return call([&]() -> Outcome {
    ColumnChoice* column = nullptr;
    if (Outcome outcome = find(index, &column); !outcome) return outcome;
    if (!column->hasPlace) return {kInvalidArgument, "The table has no place for this column."};
    const std::string text = utf8Of(viewOf(type));
    exchange::PlannedColumn& planned = plan_->columns[column->planned];
    if (text != planned.declaredType && !text.empty()) {
      if (store::Status status = exchange::setColumnType(*plan_, column->planned, text); !status)
        return status;
      column->type = text;
    }
    column->isLeftOut = text.empty();
    return {};
  });
}

Outcome ImportObject::findTarget(long index, std::string* name) {
  ColumnChoice* column = nullptr;
  if (Outcome outcome = find(index, &column); !outcome) return outcome;
  if (!column->hasPlace || plan_->isNewTable) {
    return {kInvalidArgument, "The table has no place for this column."};
  }
  *name = plan_->columns[column->planned].target;
  return {};
}

HRESULT ImportObject::IsKey(long index, VARIANT_BOOL* isKey) {
  return call([&]() -> Outcome {
    if (isKey == nullptr) return nullPointer();
    std::string name;
    if (Outcome outcome = findTarget(index, &name); !outcome) return outcome;
    const std::vector<std::string>& key = key_ ? *key_ : plan_->primaryKey;
    *isKey = truth(std::find(key.begin(), key.end(), name) != key.end());
    return {};
  });
}

HRESULT ImportObject::SetKey(long index, VARIANT_BOOL isKey) {
  return call([&]() -> Outcome {
    std::string name;
    if (Outcome outcome = findTarget(index, &name); !outcome) return outcome;
    if (!key_) key_ = plan_->primaryKey;
    std::erase(*key_, name);
    if (isKey != VARIANT_FALSE) key_->push_back(std::move(name));
    return {};
  });
}

HRESULT ImportObject::get_Doubts(long* doubts) {
  return call([&]() -> Outcome {
    if (doubts == nullptr) return nullPointer();
    if (!plan_) return notExamined();
    *doubts =
        (plan_->isEncodingInDoubt ? kEncodingInDoubt : 0) | (plan_->isHeaderInDoubt ? kHeaderInDoubt : 0);
    return {};
  });
}

HRESULT ImportObject::Preview(long mostRecords, VARIANT* texts) {
  return call([&]() -> Outcome {
    if (texts == nullptr) return nullPointer();
    if (!plan_) return notExamined();
    return preview(mostRecords, texts);
  });
}

Outcome ImportObject::preview(long mostRecords, VARIANT* texts) {
  std::unique_ptr<exchange::RecordReader> reader;
  if (store::Status status = exchange::openReader(*source_, *plan_, &reader); !status) return status;
  std::vector<std::vector<std::string>> records;
  bool hasRecord = true;
  while (hasRecord && std::cmp_less(records.size(), std::max(0L, mostRecords))) {
    if (store::Status status = reader->next(&hasRecord); !status) return status;
    if (!hasRecord) break;
    records.emplace_back();
    for (const exchange::Field& field : reader->record().fields) {
      records.back().emplace_back(store::beginningOf(field.text, kMostPreviewBytes));
    }
  }
  TextArray array(columns_.size(), records.size());
  for (std::size_t record = 0; record < records.size(); ++record) {
    const std::size_t count = std::min(records[record].size(), columns_.size());
    for (std::size_t column = 0; column < count; ++column) {
      array.set(record * columns_.size() + column, records[record][column]);
    }
  }
  array.moveTo(texts);
  return {};
}

// ---- What is stored

HRESULT ImportObject::Run(long mode, IDispatch* question, hyper* added, hyper* replaced, hyper* leftOut) {
  return call([&]() -> Outcome {
    if (added == nullptr || replaced == nullptr || leftOut == nullptr) return nullPointer();
    exchange::ImportResult result;
    if (Outcome outcome = run(mode, question, &result); !outcome) return outcome;
    *added = result.isStored ? result.added : 0;
    *replaced = result.isStored ? result.replaced : 0;
    *leftOut = result.leftOut;
    return {};
  });
}

Outcome ImportObject::run(long mode, IDispatch* question, exchange::ImportResult* result) {
  if (mode < 0 || mode > 1) return {kInvalidArgument, "The mode of an import is 0 or 1."};
  if (!plan_) return notExamined();
  store::Backend* backend = nullptr;
  if (Outcome outcome = openBackend(&backend); !outcome) return outcome;
  exchange::ImportPlan plan = *plan_;
  plan.columns.clear();
  for (const ColumnChoice& column : columns_) {
    if (column.hasPlace && !column.isLeftOut) plan.columns.push_back(plan_->columns[column.planned]);
  }
  if (store::Status status = exchange::checkColumns(plan); !status) return status;
  Observer observer(question);
  const auto kept = mode == 1 ? exchange::ImportMode::goodRecords : exchange::ImportMode::allOrNothing;
  if (store::Status status = exchange::runImport(*backend, *source_, plan, kept, observer, result); !status) {
    return status;
  }
  rejects_ = std::move(observer.rejects);
  rejectList_ = std::move(observer.list);
  return {};
}

HRESULT ImportObject::get_RejectCount(long* count) {
  return call([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    *count = static_cast<long>(rejects_.size());
    return {};
  });
}

HRESULT ImportObject::GetReject(long index, hyper* line, BSTR* reason) {
  return call([&]() -> Outcome {
    if (line == nullptr || reason == nullptr) return nullPointer();
    if (index < 0 || static_cast<std::size_t>(index) >= rejects_.size()) {
      return {kItemNotFound, "There is no such record."};
    }
    const Reject& reject = rejects_[static_cast<std::size_t>(index)];
    *reason = newText(reject.reason);
    *line = reject.line;
    return {};
  });
}

HRESULT ImportObject::SaveRejects(BSTR path) {
  return call([&]() -> Outcome {
    exchange::OutputFile output;
    const std::string target = utf8Of(fullPathOf(std::wstring(viewOf(path))));
    std::vector<std::string> inUse = connection_->filesInUse();
    inUse.push_back(path_);
    store::Status status = output.create(target, true, inUse);
    // By it spreadsheets find out that the letters are UTF-8.
    if (status) status = output.write("\xEF\xBB\xBF");
    if (status) status = rejectList_.copyTo(output);
    if (status) status = output.keep();
    return status;
  });
}

}  // namespace automation
