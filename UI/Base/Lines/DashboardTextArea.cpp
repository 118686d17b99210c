// The subject area "Dashboard", whose lines stand with the add-in that has the lifecycle service's commands.

#include "Server/Base/TextCommand.h"

namespace Vu {
namespace {

class DashboardArea : public Vs::PythonEntry<DashboardArea, Vs::TextCommandSubjectArea>
{
public:
    DashboardArea() : PythonEntry(L"Dashboard", L"Text commands of the lifecycle service's web pages", false)
    {
    }
    /// Surplus parameters are ignored here, as the pages expect.
    Checks checks() const override { return Checks::Flags; }
};

const DashboardArea kDashboardArea;

} // namespace
} // namespace Vu
