#pragma once

#include <string>

namespace Vu {

/// Adds the controls of a check to the companion window shown while a transcript is recorded. Their button
/// writes a line that runs the check: `SUBJECT.COMMAND DESCRIPTION /OPTION...`. For add-ins: one object for
/// each of their checks, created at any time after their library is loaded; the controls outlive it. Main
/// thread only.
class NormalValidationWidget
{
public:
    /// The subject area and the name of the check's text command; its options without their leading slashes,
    /// separated by slashes, each a check box: `VisibleOnly/Exact`. The box reads "Visible Only".
    NormalValidationWidget(const std::wstring& subjectArea, const std::wstring& command,
                           const std::wstring& options);
    virtual ~NormalValidationWidget() = default;
};

} // namespace Vu
