#pragma once

#include <adoce.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/connection.h"
#include "platform/store/exchange/import.h"
#include "platform/store/exchange/reject_list.h"

namespace automation {

/// A file of records that is to go into a table of a connection.
class ImportObject final : public AutomationObject<IAdoceImport> {
 public:
  /// `source` has the bytes of the file at `path`. `table` is the name that a new table gets unless another
  /// is chosen.
  ImportObject(ComPtr<ConnectionObject> connection, std::unique_ptr<store::exchange::ByteSource> source,
               std::string path, std::string table);

  HRESULT STDMETHODCALLTYPE get_Table(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE put_Table(BSTR name) override;
  HRESULT STDMETHODCALLTYPE get_Encoding(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE put_Encoding(BSTR name) override;
  HRESULT STDMETHODCALLTYPE get_Delimiter(BSTR* character) override;
  HRESULT STDMETHODCALLTYPE put_Delimiter(BSTR character) override;
  HRESULT STDMETHODCALLTYPE get_Header(long* header) override;
  HRESULT STDMETHODCALLTYPE put_Header(long header) override;
  HRESULT STDMETHODCALLTYPE get_Replaces(VARIANT_BOOL* replaces) override;
  HRESULT STDMETHODCALLTYPE put_Replaces(VARIANT_BOOL replaces) override;
  HRESULT STDMETHODCALLTYPE Examine(IDispatch* question) override;
  HRESULT STDMETHODCALLTYPE get_IsNewTable(VARIANT_BOOL* isNew) override;
  HRESULT STDMETHODCALLTYPE get_ColumnCount(long* count) override;
  HRESULT STDMETHODCALLTYPE GetColumn(long index, BSTR* source, BSTR* target, BSTR* type) override;
  HRESULT STDMETHODCALLTYPE SetColumn(long index, BSTR type) override;
  HRESULT STDMETHODCALLTYPE Preview(long mostRecords, VARIANT* texts) override;
  HRESULT STDMETHODCALLTYPE Run(long mode, IDispatch* question, hyper* added, hyper* replaced,
                                hyper* leftOut) override;
  HRESULT STDMETHODCALLTYPE get_RejectCount(long* count) override;
  HRESULT STDMETHODCALLTYPE GetReject(long index, hyper* line, BSTR* reason) override;
  HRESULT STDMETHODCALLTYPE SaveRejects(BSTR path) override;
  HRESULT STDMETHODCALLTYPE get_Format(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE put_Format(BSTR name) override;
  HRESULT STDMETHODCALLTYPE get_NullText(BSTR* text) override;
  HRESULT STDMETHODCALLTYPE put_NullText(BSTR text) override;
  HRESULT STDMETHODCALLTYPE IsKey(long index, VARIANT_BOOL* isKey) override;
  HRESULT STDMETHODCALLTYPE SetKey(long index, VARIANT_BOOL isKey) override;
  HRESULT STDMETHODCALLTYPE get_Doubts(long* doubts) override;

 protected:
  ErrorsObject* errorsForReport() override { return connection_->errors().get(); }

 private:
  class Observer;
  struct Reject {
    std::int64_t line = 0;
    std::string reason;
  };
  /// A column of the file.
  struct ColumnChoice {
    std::string name;
    std::size_t planned = 0;  // its place in the plan
    bool hasPlace = false;
    bool isLeftOut = false;
    std::string type;  // that was chosen for it in a new table; empty when none was
  };

  Outcome examine(IDispatch* question);
  void keepChoices(std::vector<ColumnChoice>& columns, store::exchange::ImportPlan& plan) const;
  Outcome run(long mode, IDispatch* question, store::exchange::ImportResult* result);
  Outcome preview(long mostRecords, VARIANT* texts);
  /// The column at an index that a client gave; a failure where there is none.
  Outcome find(long index, ColumnChoice** column);
  /// The same of one that has a place in a table that is there: its name in that.
  Outcome findTarget(long index, std::string* name);
  Outcome openBackend(store::Backend** backend) const;

  ComPtr<ConnectionObject> connection_;
  std::unique_ptr<store::exchange::ByteSource> source_;
  std::string path_;                                 // of the file
  store::exchange::ImportOptions options_;           // but for the key
  std::optional<std::vector<std::string>> key_;      // columns of the table; none for the primary key
  std::optional<store::exchange::ImportPlan> plan_;  // once the file was examined
  std::vector<ColumnChoice> columns_;
  std::vector<Reject> rejects_;             // the first of them
  store::exchange::RejectList rejectList_;  // and all
};

}  // namespace automation
