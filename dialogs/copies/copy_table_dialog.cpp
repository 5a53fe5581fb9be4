#include "dialogs/copies/copy_table_dialog.h"

#include "dialogs/copies/go_back_ids.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_COPY_TABLES, .wider = true, .higher = true},
    {.id = IDOK, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

}  // namespace

CopyTableDialog::CopyTableDialog(const NameList& tables)
    : NameChoiceDialog({IDD_COPY_TABLE, IDC_COPY_TABLES, kGrowth}, tables) {}
