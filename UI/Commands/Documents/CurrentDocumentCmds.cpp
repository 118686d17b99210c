#include "UI/Commands/Documents/CurrentDocumentCmds.h"

#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ItemhubCurrentDesignCmdDef::kRow = {
    .key = L"CurrentDesignCommand", .title = "Design",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubCurrentDesignListCmdDef::kRow = {
    .key = L"CurrentDesignListCommand", .title = "Active Designs", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubCurrentSimulationCmdDef::kRow = {
    .key = L"CurrentSimulationCommand", .title = "Simulation",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubCurrentSimulationListCmdDef::kRow = {
    .key = L"CurrentSimulationListCommand", .title = "Active Simulations", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubCurrentDocumentationCmdDef::kRow = {
    .key = L"CurrentDocumentationCommand", .title = "Documentation",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ItemhubCurrentDocumentationListCmdDef::kRow = {
    .key = L"CurrentDocumentationListCommand", .title = "Active Documentations", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

constexpr const char* kDesignDocType = "VeloraDocType";
constexpr const char* kSimulationDocType = "SimulationDocType";
constexpr const char* kDocumentationDocType = "DocumentationDocType";

} // namespace

bool CurrentDocumentButtonCmdDef::onIsApplicable(CommandContext*) const
{
    return hasOpenDocuments();
}

CommandBase* CurrentDocumentButtonCmdDef::onCreateCommand(CommandContext* context)
{
    return createCommandForSwitchingDocument(currentDocumentFiltered(), context);
}

InputControl* CurrentDocumentButtonCmdDef::onInputControl()
{
    // Uses a button rather than the list.
    return CommandDefinition::onInputControl(); // NOLINT(bugprone-parent-virtual-call)
}

bool CurrentDocumentListCmdDef::onIsApplicable(CommandContext*) const
{
    return hasOpenDocuments();
}

bool CurrentDocumentListCmdDef::onIsVisible(CommandContext*) const
{
    return isDocumentOfCurrentType();
}

ItemhubCurrentDesignCmdDef::ItemhubCurrentDesignCmdDef()
{
    filter(kDesignDocType);
}

ItemhubCurrentDesignListCmdDef::ItemhubCurrentDesignListCmdDef()
{
    filter(kDesignDocType);
}

ItemhubCurrentSimulationCmdDef::ItemhubCurrentSimulationCmdDef()
{
    filter(kSimulationDocType);
}

ItemhubCurrentSimulationListCmdDef::ItemhubCurrentSimulationListCmdDef()
{
    filter(kSimulationDocType);
}

ItemhubCurrentDocumentationCmdDef::ItemhubCurrentDocumentationCmdDef()
{
    filter(kDocumentationDocType);
}

ItemhubCurrentDocumentationListCmdDef::ItemhubCurrentDocumentationListCmdDef()
{
    filter(kDocumentationDocType);
}

} // namespace Vu::Commands
