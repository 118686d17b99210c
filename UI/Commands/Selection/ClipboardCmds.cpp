#include "UI/Commands/Selection/ClipboardCmds.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/IDeletable.h"
#include "Server/DataModel/Selection/IPasteSource.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Clipboard.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Selection/SelectedObjects.h"

#include <algorithm>
#include <memory>

namespace Vu::Commands {

using Vs::DataModel::IDeletable;
using Vs::DataModel::IPasteSource;

// clang-format off
constinit const CommandRow CutCmdDef::kRow = {
    .key = L"CutCommand", .title = "Cut", .hotkey = "Ctrl+X", .groups = {&CommandGroup::BaseGroup}};

constinit const CommandRow CopyToClipboardCmdDef::kRow = {
    .key = L"CopyToClipboardCommand", .title = "Copy", .hotkey = "Ctrl+C",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow PasteCmdDef::kRow = {
    .key = L"PasteCommand", .title = "Paste", .hotkey = "Ctrl+V", .groups = {&CommandGroup::BaseGroup}};
// clang-format on

namespace {

using Owned = std::unique_ptr<Vs::Request, void (*)(Vs::Request*)>;

Owned owned(Vs::Request* request)
{
    return {request, [](Vs::Request* each) { each->destroy(); }};
}

/// Whether the object can be pasted, and says yes to one of the questions.
bool isPasteSource(const Vs::LogicalSelection& object, bool (*what)(const IPasteSource&))
{
    const Vs::StrongRef<Vs::SharedObject> leaf = object.leaf(*object.asset());
    const auto* source = Vs::cast<IPasteSource>(leaf.get());
    return source && what(*source);
}

bool any(const IPasteSource&)
{
    return true;
}

/// Refills the clipboard with those of the objects that say yes.
void putOnClipboard(const std::vector<Vs::StrongRef<Vs::LogicalSelection>>& objects, bool cut,
                    bool (*what)(const IPasteSource&))
{
    Clipboard* clipboard = SessionMgr::get()->globalClipboard();
    clipboard->clear();
    for (const auto& object : objects)
        if (isPasteSource(*object, what))
            clipboard->add(object, cut);
}

std::vector<Vs::ObjectPath> pathsOf(const std::vector<Vs::StrongRef<Vs::LogicalSelection>>& objects)
{
    std::vector<Vs::ObjectPath> paths;
    for (const auto& object : objects)
        paths.push_back(object->path());
    return paths;
}

} // namespace

bool CutCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

bool CutCmdDef::onAddToContextMenu()
{
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    const auto objects = selectedObjects(manager);
    return !objects.empty() && objects.size() == manager->selectionSet().size() &&
           std::all_of(objects.begin(), objects.end(), [](const auto& object) {
               return object->path().isQualifiedAndPoppable() &&
                      isPasteSource(*object, [](const IPasteSource& source) { return source.canCut(); });
           });
}

// What can only be given another place is taken too: the paste gives it one.
void CutCmd::onExecute(Vs::Status&)
{
    if (selectionManager())
        putOnClipboard(selectedObjects(selectionManager()), true,
                       [](const IPasteSource& source) { return source.canCut() || source.canReorder(); });
}

void CopyToClipboardCmdDef::createCommandDef()
{
    static CopyToClipboardCmdDef definition;
}

bool CopyToClipboardCmdDef::onIsApplicable(CommandContext* context) const
{
    if (!hasAssetSession(context))
        return false;
    const auto objects = selectedObjects(context->assetSession()->selectionManager());
    return std::any_of(objects.begin(), objects.end(),
                       [](const auto& object) { return isPasteSource(*object, any); });
}

void CopyToClipboardCmd::onExecute(Vs::Status&)
{
    if (!selectionManager())
        return;
    putOnClipboard(selectedObjects(selectionManager()), false, any);
    copyActiveViewLater();
}

void PasteCmdDef::createCommandDef()
{
    static PasteCmdDef definition;
}

bool PasteCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context) && !SessionMgr::get()->globalClipboard()->empty();
}

void PasteCmd::onExecute(Vs::Status& status)
{
    Clipboard* clipboard = SessionMgr::get()->globalClipboard();
    if (!assetSession() || clipboard->empty())
        return;
    std::vector<Vs::StrongRef<Vs::Selection>> pasted;
    for (const bool cut : {false, true}) {
        Objects objects;
        for (const Clipboard::Entry& entry : clipboard->entries())
            if (entry.cut == cut)
                objects.push_back(entry.object);
        const auto added = paste(objects, cut, status);
        pasted.insert(pasted.end(), added.begin(), added.end());
        if (status.isError())
            return;
        if (cut && !objects.empty())
            clipboard->clear();
    }
    if (pasted.empty()) {
        status.addError(localized("PasteNothing", "Paste: what was on the clipboard isn't there any more."));
        return;
    }
    selectionManager()->highlightSet().clear();
    selectionManager()->selectionSet().replace(pasted);
}

// The objects say which of them one request covers; a request that covers none would loop forever.
std::vector<Vs::StrongRef<Vs::Selection>> PasteCmd::paste(Objects objects, bool cut, Vs::Status& status)
{
    std::vector<Vs::StrongRef<Vs::Selection>> pasted;
    const Objects all = objects;
    Vs::Asset* target = assetSession()->asset();
    while (!objects.empty()) {
        const Vs::StrongRef<Vs::SharedObject> leaf = objects.front()->leaf(*objects.front()->asset());
        auto* source = Vs::cast<IPasteSource>(leaf.get());
        std::vector<Vs::ObjectPath> handled;
        Vs::PasteRequest* request =
            source ? source->providePasteRequest(pathsOf(objects), cut, handled) : nullptr;
        if (!request) {
            // It is gone since it was copied.
            objects.erase(objects.begin());
            continue;
        }
        const Owned keeper = owned(request);
        request->into(assetSession()->editedComponent());
        const bool taken = takeOut(objects, handled) > 0;
        if (!executeRequest(request, false, {}, status))
            return pasted;
        for (const Vs::ObjectPath& path : request->pasted())
            pasted.emplace_back(new Vs::LogicalSelection(target, path, Vs::StrongRef<Vs::Selection>()));
        if (!taken)
            break;
    }
    if (cut)
        deleteFrom(all, status);
    return pasted;
}

/// Takes what was pasted into another asset away from its own.
void PasteCmd::deleteFrom(Objects objects, Vs::Status& status)
{
    while (!objects.empty() && status.isOk()) {
        Vs::Asset* asset = objects.front()->asset();
        const Vs::StrongRef<Vs::SharedObject> leaf = objects.front()->leaf(*asset);
        auto* source = asset == assetSession()->asset() ? nullptr : Vs::cast<IDeletable>(leaf.get());
        std::vector<Vs::ObjectPath> handled;
        Vs::Request* request =
            source ? source->provideMultiDeleteRequest(pathsOf(objects), handled) : nullptr;
        if (!request) {
            objects.erase(objects.begin());
            continue;
        }
        const Owned keeper = owned(request);
        if (AssetSession* session = SessionMgr::get()->getOpenAssetSession(asset)) {
            session->selectionManager()->selectionSet().clear();
            session->selectionManager()->highlightSet().clear();
        }
        request->execute(asset, status);
        if (takeOut(objects, handled) == 0)
            return;
    }
}

} // namespace Vu::Commands
