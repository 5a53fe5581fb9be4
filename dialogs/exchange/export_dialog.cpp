#include "dialogs/exchange/export_dialog.h"

#include "dialogs/exchange/export_ids.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_EXPORT_SOURCES, .wider = true, .higher = true},
    {.id = IDC_EXPORT_FORMATS, .wider = true, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

}  // namespace

ExportDialog::ExportDialog(const NameList& sources)
    : NameChoiceDialog({IDD_EXPORT, IDC_EXPORT_SOURCES, kGrowth}, sources) {}
