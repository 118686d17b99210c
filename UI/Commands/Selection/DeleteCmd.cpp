#include "UI/Commands/Selection/DeleteCmd.h"

#include "Server/DataModel/Edit/SeparateRequest.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/IDeletable.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Selection/SelectedObjects.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace Vu::Commands {

using Vs::DataModel::IDeletable;

constinit const CommandRow DeleteCmdDef::kRow = {.key = L"DeleteCommand",
                                                 .title = "Delete",
                                                 .groups = {&CommandGroup::BaseGroup},
                                                 .arguments = {L"Alone"}};

namespace {

/// What `what(IDeletable&)` says of the selection's object; the default value if that can't be deleted at
/// all.
template <class What>
auto askDeletable(const Vs::LogicalSelection& selection, Vs::Asset& asset, What&& what)
{
    const Vs::StrongRef<Vs::SharedObject> leaf = selection.leaf(asset);
    auto* deletable = Vs::cast<IDeletable>(leaf.get());
    return deletable ? what(*deletable) : decltype(what(*deletable)){};
}

bool canBeDeleted(const Vs::LogicalSelection& selection, Vs::Asset& asset)
{
    return askDeletable(selection, asset,
                        [&](const IDeletable& object) { return object.canDelete(selection.path()); });
}

} // namespace

const Vs::UniqueString* DeleteCmdDef::aloneArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Alone", true);
    return name;
}

bool DeleteCmdDef::onIsApplicable(CommandContext* context) const
{
    if (!hasAssetSession(context))
        return false;
    const auto objects = selectedObjects(context->assetSession()->selectionManager());
    return std::any_of(objects.begin(), objects.end(),
                       [&](const auto& object) { return canBeDeleted(*object, *context->asset()); });
}

void DeleteCmd::onExecute(Vs::Status& status)
{
    Selections selections = selectedObjects(selectionManager());
    if (!selections.empty())
        deleteSelections(selections, status);
}

void DeleteCmd::deleteSelections(Selections& selections, Vs::Status& status)
{
    Vs::Asset& asset = *commandContext()->asset();
    try {
        const Copies copies = copiesMeant(selections, asset);
        if (copies == Copies::None)
            return;
        if (copies == Copies::Alone)
            commandContext()->addArgument(DeleteCmdDef::aloneArgumentName(), 1);
        Selections single, multi;
        for (const auto& selection : selections)
            if (canBeDeleted(*selection, asset)) {
                const bool together = askDeletable(*selection, asset, [&](const IDeletable& object) {
                    return object.requiresMultiDelete(selection->path());
                });
                (together && copies != Copies::Alone ? multi : single).push_back(selection);
            }
        // Before anything is deleted, so that no selection points at what is gone.
        selectionManager()->selectionSet().clear();
        selectionManager()->highlightSet().clear();
        deleteEach(single, asset, status);
        deleteTogether(std::move(multi), asset, status);
    } catch (...) {
        status.addError(
            localized("DeleteCommandGenericError", "Delete command failed:  objects not deleted"));
    }
}

// Whoever selected all copies means all of them.
DeleteCmd::Copies DeleteCmd::copiesMeant(const Selections& selections, Vs::Asset& asset) const
{
    int alone = 0;
    if (commandContext()->argument(DeleteCmdDef::aloneArgumentName(), CommandContext::EArgType::Int, &alone))
        return alone ? Copies::Alone : Copies::All;
    if (commandContext()->isByLine())
        return Copies::All;
    std::set<std::string> others;
    for (const auto& selection : selections)
        for (const std::string& copy : Vs::SeparateRequest::groupOf(selection->path(), asset))
            others.insert(copy);
    const size_t copies = others.size();
    for (const auto& selection : selections)
        others.erase(selection->componentId());
    if (others.empty())
        return Copies::All;
    MessageBox box(localizedFormat(
        "DeleteCopies", "What is selected is part of a pattern of %1% copies. Delete them all?", copies));
    box.icon(kQuestionIcon);
    box.addButton(localized("DeleteCopiesAlone", "Only What Is Selected"), true);
    box.addButton(localized("DeleteCopiesAll", "All Copies"));
    box.addButton(kCancelButton);
    const int answer = box.show();
    return answer == 0 ? Copies::Alone : answer == 1 ? Copies::All : Copies::None;
}

void DeleteCmd::run(Vs::Request* request, Vs::Status& status)
{
    const std::unique_ptr<Vs::Request, void (*)(Vs::Request*)> owned(
        request, [](Vs::Request* each) { each->destroy(); });
    executeRequest(request, false, {.asStep = true}, status);
}

void DeleteCmd::deleteEach(const Selections& selections, Vs::Asset& asset, Vs::Status& status)
{
    for (const auto& selection : selections) {
        // One that is gone with another has no object any more.
        Vs::Request* request = askDeletable(*selection, asset, [&](IDeletable& object) {
            return object.provideDeleteRequest(selection->path());
        });
        if (!request)
            continue;
        run(request, status);
        beginStep(false, false);
    }
}

// The objects say which of them one request covers; a request that covers none would loop forever.
void DeleteCmd::deleteTogether(Selections selections, Vs::Asset& asset, Vs::Status& status)
{
    while (!selections.empty()) {
        std::vector<Vs::ObjectPath> paths, handled;
        for (const auto& selection : selections)
            paths.push_back(selection->path());
        Vs::Request* request = nullptr;
        const bool isThere = askDeletable(*selections.front(), asset, [&](IDeletable& object) {
            request = object.provideMultiDeleteRequest(paths, handled);
            return true;
        });
        if (!isThere)
            return;
        const size_t taken = takeOut(selections, std::move(handled));
        // Those that give none are skipped.
        if (request) {
            run(request, status);
            if (status.isError())
                return;
            beginStep(false, false);
        }
        if (taken == 0)
            return;
    }
}

} // namespace Vu::Commands
