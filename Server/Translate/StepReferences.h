#pragma once

#include <XSControl_WorkSession.hxx>

#include <string>
#include <vector>

namespace Vs::Translate {

/// The files that contain a STEP file's parts, other than itself.
struct StepReferences
{
    std::vector<std::string> beside;  ///< As named, relative to the folder of the file.
    std::vector<std::string> refused; ///< Those that are elsewhere.
};

/// Finds them in what was read from `file`, and removes the names of those that are elsewhere, so that a
/// transfer doesn't open them.
StepReferences takeReferences(const Handle(XSControl_WorkSession) & session, const std::string& file);

} // namespace Vs::Translate
