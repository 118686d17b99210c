#pragma once

#include <XSControl_WorkSession.hxx>

#include <string>
#include <vector>

namespace Vs::Translate {

/// The files in which a STEP file's parts are, if not in itself.
struct StepReferences
{
    std::vector<std::string> beside;  ///< As they are named, from the folder of the file.
    std::vector<std::string> refused; ///< Those that lie elsewhere.
};

/// Finds them in what was read from `file`, and takes the names of those that lie elsewhere out of it, so
/// that a transfer doesn't open them.
StepReferences takeReferences(const Handle(XSControl_WorkSession) & session, const std::string& file);

} // namespace Vs::Translate
