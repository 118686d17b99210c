#include "UI/Base/Command/CommandArguments.h"

#include "Server/Base/TextCommandHelp.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Private/Localized.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>

namespace Vu {

bool hasOnlyKnownArguments(const CommandContext& context, const std::wstring& title,
                           const std::vector<std::wstring>& known, Vs::Status& status)
{
    for (size_t i = 0; i < context.arguments(); ++i) {
        const std::wstring& name = context.argumentName(i)->wideText();
        if (std::find(known.begin(), known.end(), name) != known.end())
            continue;
        const std::wstring meant = Vs::nearestName(name, known);
        status.addError(
            known.empty()
                ? localizedFormat("NoArguments", "%1% has no argument \"%2%\": it takes none.", title, name)
            : meant.empty()
                ? localizedFormat("UnknownArgument", "%1% has no argument \"%2%\"; there are: %3%.", title,
                                  name, boost::algorithm::join(known, L", "))
                : localizedFormat("MistypedArgument", "%1% has no argument \"%2%\". Did you mean \"%3%\"?",
                                  title, name, meant));
        return false;
    }
    return true;
}

} // namespace Vu
