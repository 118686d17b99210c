#pragma once

#include <string>

namespace Vu {

/// Adds the controls of a check to the window that stands by while a transcript is recorded. Their button
/// writes a line that runs the check: `SUBJECT.COMMAND DESCRIPTION /OPTION...`. For add-ins: one object for
/// each of their checks, made at any time from the loading of their library on; the controls stay when it
/// goes. Main thread only.
class NormalValidationWidget
{
public:
    /// The subject area and the name of the check's text command; its options without slashes, with one
    /// between any two, each a box to tick: `VisibleOnly/Exact`. The box reads "Visible Only".
    NormalValidationWidget(const std::wstring& subjectArea, const std::wstring& command,
                           const std::wstring& options);
    virtual ~NormalValidationWidget() = default;
};

} // namespace Vu
