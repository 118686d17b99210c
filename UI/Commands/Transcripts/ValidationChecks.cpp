#include "UI/Commands/Transcripts/ValidationChecks.h"

#include <utility>
#include <vector>

namespace Vu::Commands {
namespace {

struct Checks
{
    std::vector<ValidationCheck> waiting;
    ValidationCheckTaker taker;
};

/// Never destroyed: add-ins register while libraries are loaded, in any order.
Checks& checks()
{
    static auto& all = *new Checks;
    return all;
}

} // namespace

void addValidationCheck(ValidationCheck check)
{
    if (checks().taker)
        checks().taker(check);
    else
        checks().waiting.push_back(std::move(check));
}

void takeValidationChecks(ValidationCheckTaker taker)
{
    checks().taker = std::move(taker);
    for (const ValidationCheck& check : std::exchange(checks().waiting, {}))
        checks().taker(check);
}

} // namespace Vu::Commands
