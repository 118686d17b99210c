#include "UI/Design/SeparateCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/SeparateRequest.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Localized.h"
#include "UI/Design/ParametersAsList.h"

#include <algorithm>
#include <memory>

namespace Vu::Design {
namespace {

using Paths = std::vector<Vs::ObjectPath>;

Paths selectedPaths(const AssetSession& session)
{
    return Vs::pathsIn(session.selectionManager()->selectionSet());
}

class SeparateCmd : public Vs::Implements<SeparateCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override
    {
        const Vs::Asset* asset = commandContext()->asset();
        if (!asset || !assetSession()) {
            status.addError(
                localized("NoDesignToSeparate", "There is no active design to take a pattern apart in."));
            return;
        }
        Paths paths = readPaths(*asset, status);
        if (status.isError())
            return;
        const std::unique_ptr<Vs::Request, void (*)(Vs::Request*)> request(
            Vs::SeparateRequest::make(std::move(paths)), [](Vs::Request* each) { each->destroy(); });
        executeRequest(request.get(), false, {}, status);
    }

private:
    Paths readPaths(const Vs::Asset& asset, Vs::Status& status) const
    {
        const std::wstring named = commandContext()->argumentAsString(SeparateCmdDef::objectsArgumentName());
        return named.empty() ? selectedPaths(*assetSession()) : pathsOfList(named, asset, status);
    }
};

class TextCmdSeparate : public Vs::PythonEntry<TextCmdSeparate, TranscriptedCommandTextCommand>
{
public:
    TextCmdSeparate()
        : PythonEntry(
              L"Design", L"Separate",
              L"[<path>]... Takes the patterns apart to which the components belong, or what is selected", "",
              false, L"SeparateCommand")
    {
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        if (const std::wstring objects = parametersAsList(parameters); !objects.empty())
            context.addArgument(SeparateCmdDef::objectsArgumentName(), objects);
    }
};

TextCmdSeparate theSeparate;

} // namespace

constinit const CommandRow SeparateCmdDef::kRow = {.key = L"SeparateCommand",
                                                   .title = "Separate Pattern",
                                                   .tooltip =
                                                       "Make each copy of a pattern a component by itself",
                                                   .groups = {&CommandGroup::VeloraSolidGroup},
                                                   .arguments = {L"Objects"}};

const Vs::UniqueString* SeparateCmdDef::objectsArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Objects", true);
    return name;
}

bool SeparateCmdDef::onIsApplicable(CommandContext* context) const
{
    const AssetSession* session = context->assetSession();
    if (!session || !context->argumentAsString(objectsArgumentName()).empty())
        return session != nullptr;
    const Paths paths = selectedPaths(*session);
    return std::any_of(paths.begin(), paths.end(), [&](const Vs::ObjectPath& path) {
        return !Vs::SeparateRequest::groupOf(path, *session->asset()).empty();
    });
}

CommandBase* SeparateCmdDef::onCreateCommand(CommandContext* context)
{
    return new SeparateCmd(this, context);
}

bool SeparateCmdDef::onAddToContextMenu()
{
    CommandContext context = CommandContext::activeContext();
    return isApplicable(&context);
}

} // namespace Vu::Design
