#include "UI/Base/Command/CommandArguments.h"

#include "Server/Base/Require.h"
#include "Server/Base/TextCommandHelp.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Private/Localized.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <unordered_map>

namespace Vu {
namespace {

using Rows = std::unordered_map<std::wstring, const CommandArguments*>;

Rows& declared()
{
    // Never destroyed: add-ins go after the host's own statics.
    static auto* const rows = new Rows;
    return *rows;
}

} // namespace

DeclaredArguments::DeclaredArguments(std::span<const CommandArguments> rows) : m_rows(rows)
{
    Vs::assertMainThread();
    for (const CommandArguments& row : m_rows)
        Vs::require(declared().emplace(row.command, &row).second,
                    "the arguments of a command are declared once");
}

DeclaredArguments::~DeclaredArguments()
{
    for (const CommandArguments& row : m_rows)
        declared().erase(row.command);
}

std::optional<std::vector<std::wstring>> DeclaredArguments::of(const std::wstring& command)
{
    const auto found = declared().find(command);
    if (found == declared().end())
        return std::nullopt;
    std::vector<std::wstring> names;
    for (const wchar_t* name : found->second->names)
        if (name)
            names.emplace_back(name);
    return names;
}

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
