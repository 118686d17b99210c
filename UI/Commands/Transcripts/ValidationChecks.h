#pragma once

#include <functional>
#include <string>

namespace Vu::Commands {

/// What a NormalValidationWidget says of its check.
struct ValidationCheck
{
    std::wstring subjectArea, command, options;
};

using ValidationCheckTaker = std::function<void(const ValidationCheck&)>;

/// Registers a check. No widget is made before a window needs it.
void addValidationCheck(ValidationCheck check);
/// For the library of the widgets, once its window comes to be: it is given all that were registered, and
/// from then on each at once.
void takeValidationChecks(ValidationCheckTaker taker);

} // namespace Vu::Commands
