// The subject area "Dashboard"; its lines belong to the add-in that has the lifecycle service's commands.

#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/TextRows.h"

namespace Vu {
namespace {

/// Surplus parameters are ignored here, as the pages expect.
constexpr AreaRow kDashboardAreaRow = {L"Dashboard", L"Text commands of the lifecycle service's web pages",
                                       false, AreaRow::Checks::Flags};

const SubjectArea<kDashboardAreaRow> kDashboardArea;

} // namespace
} // namespace Vu
