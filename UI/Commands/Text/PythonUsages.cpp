#include "Server/Base/PythonSignature.h"

namespace Vu::Commands {
namespace {

struct UsageRow
{
    const wchar_t* line;
    const char* usage;
};

/// What the helps of these lines don't say, or say within their sentences.
constexpr UsageRow kRows[] = {
    {L"Camera.Set", "<position> <target> <up> <near> <far> <width> <height> <projection>"},
    {L"Dashboard.AuthenticateWithTokenCmd", "<tenant_url> <token> [<tenant>]"},
    {L"Dashboard.NewItemCmd",
     "<workspace_id> <item_name> [<linked_item_id> <linked_item_workspace_id>] [<asset_type>]"},
    {L"Performance.StartMetric", "<type>"},
    {L"Performance.Validate", "<type> [<description>]"},
    {L"Performance.ValidateMemory", "[<description>] [/physical] [/virtual]"},
    {L"VuCommands.CurrentlyOpenDocumentsCmd", "[<asset_type>]"},
    {L"VuCommands.CycleOpenDocumentsCmd", "[<asset_type>]"},
    {L"VuCommands.CycleWorkspacesBackwardCmd", "[<asset_type>]"},
    {L"VuCommands.CycleWorkspacesForwardCmd", "[<asset_type>]"},
    {L"VuCommands.NewDocumentCmd", "[<asset_type> <uuid>]"},
    {L"VuCommands.NewSingleDocumentCmd", "[<asset_type> <uuid>]"},
    {L"VuCommands.RecentDocumentsCmd", "[<asset_type>]"},
};

const bool theUsages = [] {
    for (const UsageRow& row : kRows)
        Vs::PythonSignature::usage(row.line, row.usage);
    return true;
}();

} // namespace
} // namespace Vu::Commands
