#include "UI/Base/Session/ByHand.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandDefinition.h"

#include <map>

namespace Vu {
namespace {

std::map<std::wstring, ByHand::Action>& actions()
{
    static auto* const all = new std::map<std::wstring, ByHand::Action>;
    return *all;
}

} // namespace

ByHand::ByHand(std::wstring command, Action action) : m_command(std::move(command))
{
    Vs::assertMainThread();
    const bool isNew = actions().emplace(m_command, std::move(action)).second;
    Vs::require(isNew, "a command has one action by hand");
}

ByHand::~ByHand()
{
    actions().erase(m_command);
}

bool ByHand::takesOver(const CommandDefinition& definition, const CommandContext& context)
{
    const auto found = actions().find(definition.id());
    return found != actions().end() && found->second(context);
}

} // namespace Vu
