#include "data/handles/import_file.h"

#include <windows.h>

#include <adoce.h>
#include <algorithm>
#include <utility>

#include "base/variant.h"
#include "data/handles/busy_question.h"
#include "data/handles/last_error.h"
#include "data/values/value_conversion.h"
#include "owners/com_handles.h"
#include "owners/ole_functions.h"

namespace {

// Of IAdoceImport's Doubts.
constexpr LONG kEncodingInDoubt = 1;
constexpr LONG kHeaderInDoubt = 2;

}  // namespace

struct ImportFile::Object {
  ComPtr<IAdoceImport> import;

  template <typename Get>
  String text(Get get) const {
    UniqueBstr text;
    return SUCCEEDED((import.get()->*get)(text.put())) ? textOfBstr(text.get()) : String();
  }
  LONG doubts() const {
    LONG doubts = 0;
    return SUCCEEDED(import->get_Doubts(&doubts)) ? doubts : 0;
  }
  ComPtr<IDispatch> question(BusyListener* listener) const {
    return listener ? makeMovingQuestion(*listener) : ComPtr<IDispatch>();
  }
};

ImportFile::ImportFile(IAdoceImport* object, BusyListener* listener)
    : object_(std::make_unique<Object>()), listener_(listener) {
  object->AddRef();
  object_->import = ComPtr<IAdoceImport>(object);
}

ImportFile::~ImportFile() = default;

String ImportFile::table() const {
  return object_->text(&IAdoceImport::get_Table);
}

String ImportFile::encoding() const {
  return object_->text(&IAdoceImport::get_Encoding);
}

String ImportFile::delimiter() const {
  return object_->text(&IAdoceImport::get_Delimiter);
}

bool ImportFile::hasHeader() const {
  LONG header = 0;
  return SUCCEEDED(object_->import->get_Header(&header)) && header == 1;
}

bool ImportFile::replaces() const {
  VARIANT_BOOL replaces = VARIANT_FALSE;
  return SUCCEEDED(object_->import->get_Replaces(&replaces)) && replaces != VARIANT_FALSE;
}

void ImportFile::setTable(const String& name) {
  object_->import->put_Table(makeBstr(name.text()).get());
}

void ImportFile::setEncoding(const String& name) {
  object_->import->put_Encoding(makeBstr(name.text()).get());
}

void ImportFile::setDelimiter(const String& character) {
  object_->import->put_Delimiter(makeBstr(character.text()).get());
}

void ImportFile::setHeader(bool hasHeader) {
  object_->import->put_Header(hasHeader ? 1 : 0);
}

void ImportFile::setReplaces(bool replaces) {
  object_->import->put_Replaces(replaces ? VARIANT_TRUE : VARIANT_FALSE);
}

String ImportFile::format() const {
  return object_->text(&IAdoceImport::get_Format);
}

void ImportFile::setFormat(const String& name) {
  object_->import->put_Format(makeBstr(name.text()).get());
}

String ImportFile::nullText() const {
  return object_->text(&IAdoceImport::get_NullText);
}

void ImportFile::setNullText(const String& text) {
  object_->import->put_NullText(makeBstr(text.text()).get());
}

Outcome ImportFile::examine() {
  const ComPtr<IDispatch> question = object_->question(listener_);
  return outcomeOf(object_->import->Examine(question.get()));
}

bool ImportFile::isNewTable() const {
  VARIANT_BOOL isNew = VARIANT_FALSE;
  return SUCCEEDED(object_->import->get_IsNewTable(&isNew)) && isNew != VARIANT_FALSE;
}

std::vector<ImportColumn> ImportFile::columns() const {
  LONG count = 0;
  object_->import->get_ColumnCount(&count);
  std::vector<ImportColumn> columns;
  for (LONG index = 0; index < count; ++index) {
    UniqueBstr source;
    UniqueBstr target;
    UniqueBstr type;
    if (FAILED(object_->import->GetColumn(index, source.put(), target.put(), type.put()))) break;
    ImportColumn column;
    column.source = textOfBstr(source.get());
    column.target = textOfBstr(target.get());
    column.type = textOfBstr(type.get());
    column.hasPlace = !column.type.isEmpty() || !column.target.isEmpty();
    columns.push_back(std::move(column));
  }
  return columns;
}

Outcome ImportFile::setType(std::uint32_t index, const String& type) {
  return outcomeOf(object_->import->SetColumn(static_cast<LONG>(index), makeBstr(type.text()).get()));
}

bool ImportFile::isKey(std::uint32_t index) const {
  VARIANT_BOOL isKey = VARIANT_FALSE;
  return SUCCEEDED(object_->import->IsKey(static_cast<LONG>(index), &isKey)) && isKey != VARIANT_FALSE;
}

void ImportFile::setKey(std::uint32_t index, bool isKey) {
  object_->import->SetKey(static_cast<LONG>(index), isKey ? VARIANT_TRUE : VARIANT_FALSE);
}

bool ImportFile::isEncodingInDoubt() const {
  return (object_->doubts() & kEncodingInDoubt) != 0;
}

bool ImportFile::isHeaderInDoubt() const {
  return (object_->doubts() & kHeaderInDoubt) != 0;
}

Outcome ImportFile::preview(std::uint32_t most, std::vector<std::vector<String>>& records) const {
  Variant texts;
  if (Outcome read = outcomeOf(object_->import->Preview(static_cast<LONG>(most), texts.put())); !read)
    return read;
  SAFEARRAY* const array = V_ARRAY(&texts.get());
  const std::size_t columnCount = array->rgsabound[1].cElements;
  const std::size_t recordCount = array->rgsabound[0].cElements;
  BSTR* all = nullptr;
  if (Outcome locked = outcomeOf(ole::safeArrayAccessData(array, reinterpret_cast<void**>(&all))); !locked)
    return locked;
  std::vector<std::vector<String>> found(recordCount);
  for (std::size_t record = 0; record < recordCount; ++record) {
    for (std::size_t column = 0; column < columnCount; ++column) {
      found[record].push_back(textOfBstr(all[record * columnCount + column]));
    }
  }
  ole::safeArrayUnaccessData(array);
  records = std::move(found);
  return {};
}

Outcome ImportFile::run(bool keepsGood, ImportCounts& counts) {
  const ComPtr<IDispatch> question = object_->question(listener_);
  hyper added = 0;
  hyper replaced = 0;
  hyper leftOut = 0;
  if (Outcome run =
          outcomeOf(object_->import->Run(keepsGood ? 1 : 0, question.get(), &added, &replaced, &leftOut));
      !run) {
    return run;
  }
  counts = {added, replaced, leftOut};
  return {};
}

std::vector<RejectedRecord> ImportFile::rejected() const {
  LONG count = 0;
  object_->import->get_RejectCount(&count);
  std::vector<RejectedRecord> records;
  for (LONG index = 0; index < count; ++index) {
    hyper line = 0;
    UniqueBstr reason;
    if (FAILED(object_->import->GetReject(index, &line, reason.put()))) break;
    records.push_back({line, textOfBstr(reason.get())});
  }
  return records;
}

Outcome ImportFile::saveRejected(const String& path) const {
  return outcomeOf(object_->import->SaveRejects(makeBstr(path.text()).get()));
}
