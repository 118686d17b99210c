#pragma once

#include <functional>
#include <string>

namespace Vu::Commands {

/// A NormalValidationWidget's description of its check.
struct ValidationCheck
{
    std::wstring subjectArea, command, options;
};

using ValidationCheckTaker = std::function<void(const ValidationCheck&)>;

/// Registers a check. No widget is created before a window needs it.
void addValidationCheck(ValidationCheck check);
/// For the widgets' library, when its window is created: it receives all registered checks, and from then on
/// each new one at once.
void takeValidationChecks(ValidationCheckTaker taker);

} // namespace Vu::Commands
