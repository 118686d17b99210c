// The part of the subject area "Commands" that lists the environments, which the user calls workspaces.

#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu {
namespace {

/// The remark after an environment in the list: whether the session is in it, or would return to it.
std::wstring placeOf(const EnvironmentDefinition* environment, const AssetSession& session)
{
    const EnvironmentState* state = session.activeEnvironmentState();
    if (state && state->environmentDefinition() == environment)
        return L"  " + localized("EnvironmentActive", "(active)");
    while (state) {
        state = state->returnState();
        if (state && state->environmentDefinition() == environment)
            return L"  " + localized("EnvironmentBeneath", "(beneath)");
    }
    return {};
}

class TextCmdCommandsEnvironments : public Vs::PythonEntry<TextCmdCommandsEnvironments, Vs::TextCommand>
{
public:
    TextCmdCommandsEnvironments()
        : PythonEntry(
              L"Commands", L"Environments",
              L"Lists the workspaces in which the active model can be, each with its identifier; those to "
              L"which one can return are marked.",
              "", true, true)
    {
    }

    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override
    {
        const AssetSession* session = SessionMgr::get()->activeAssetSession();
        if (!session)
            return {1, localized("NoModelForEnvironments", "There is no active model.")};
        std::wstring list;
        for (const EnvironmentDefinition* environment : EnvironmentDefinitionMgr::get()->definitions()) {
            const std::wstring place = placeOf(environment, *session);
            if (place.empty() && !environment->isApplicable(session))
                continue;
            list += (list.empty() ? L"" : L"\n") + environment->id() + L"  " + environment->name() + place;
        }
        return {0, list};
    }
};

TextCmdCommandsEnvironments theEnvironments;

} // namespace
} // namespace Vu
