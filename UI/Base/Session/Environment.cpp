#include "UI/Base/Session/Environment.h"

#include "Server/Base/Require.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <algorithm>

namespace Vu {

EnvironmentDefinition::EnvironmentDefinition(std::wstring id, std::wstring name)
    : m_id(std::move(id)), m_name(std::move(name))
{
    Vs::assertMainThread();
    Vs::require(!m_id.empty(), "an environment has an identifier");
    EnvironmentDefinitionMgr::get()->m_definitions.push_back(this);
}

EnvironmentDefinition::~EnvironmentDefinition()
{
    std::erase(EnvironmentDefinitionMgr::get()->m_definitions, this);
}

EnvironmentDefinitionMgr* EnvironmentDefinitionMgr::get()
{
    static auto* const manager = new EnvironmentDefinitionMgr;
    return manager;
}

EnvironmentDefinition* EnvironmentDefinitionMgr::findEnvironmentDefinitionById(const std::wstring& id) const
{
    const auto found =
        std::find_if(m_definitions.begin(), m_definitions.end(),
                     [&](const EnvironmentDefinition* definition) { return definition->id() == id; });
    return found == m_definitions.end() ? nullptr : *found;
}

bool DebugEnvironmentDef::onIsApplicable(const AssetSession*) const
{
    return UIBaseOptionGroup::get()->showDebugDialog();
}

} // namespace Vu
