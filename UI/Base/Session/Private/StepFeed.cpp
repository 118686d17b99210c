#include "UI/Base/Session/Private/StepFeed.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/TransactionMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu {
namespace {

constexpr const wchar_t* kUndo = L"UndoCommand";
constexpr const wchar_t* kRedo = L"RedoCommand";
/// The key of steps made by a line of text alone.
constexpr const wchar_t* kTextCommand = L"TextCommand";

bool isWorkedOn(const Vs::Asset* asset)
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    return session && session->asset() == asset;
}

/// What undoes or redoes that many steps. Null if that is nothing, or if the model isn't the one that the
/// user works on.
std::function<void()> walk(const Vs::Asset* asset, const wchar_t* command, size_t steps)
{
    if (steps == 0 || !isWorkedOn(asset))
        return nullptr;
    return [asset, command, index = static_cast<int>(steps) - 1] {
        CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command);
        CommandContext context = CommandContext::activeContext();
        if (!isWorkedOn(asset) || !definition || !definition->isAvailable(&context))
            return;
        context.addArgument(Vs::UniqueString::find("TxnIndex"), index);
        definition->executeLater(context);
    };
}

FeedEntry entryOf(const Vs::TransactionNode& step, FeedEntry::Kind kind)
{
    FeedEntry entry;
    entry.time = step.time();
    entry.kind = kind;
    entry.title = step.userName();
    if (const CommandDefinition* definition =
            CommandDefinitionMgr::get()->findCommandDefinitionById(step.cmdKey())) {
        entry.origin = definition->info()->name();
        entry.icon = definition->info()->icon();
    } else if (step.cmdKey() == kTextCommand) {
        entry.origin = localized("FeedCommandLine", "Command line");
    }
    return entry;
}

void addSteps(Vs::Asset& asset, std::vector<FeedEntry>& entries)
{
    const Vs::TransactionNode* session = Vs::TransactionMgr(&asset).sessionTransaction();
    const auto& done = session->doneChanges();
    const auto& undone = session->undoneChanges();
    const std::wstring back = localized("FeedUndoTo", "Undo to Here");
    for (size_t i = undone.size(); i-- > 0;) {
        FeedEntry& entry = entries.emplace_back(entryOf(*undone[i], FeedEntry::Kind::Undone));
        entry.action = walk(&asset, kRedo, i + 1);
        entry.actionTitle = localized("FeedRedoTo", "Redo to Here");
    }
    for (size_t i = done.size(); i-- > 0;) {
        const size_t newer = done.size() - 1 - i;
        FeedEntry& entry = entries.emplace_back(
            entryOf(*done[i], newer == 0 ? FeedEntry::Kind::Present : FeedEntry::Kind::Step));
        entry.action = walk(&asset, kUndo, newer);
        entry.actionTitle = back;
    }
    if ((done.empty() && undone.empty()) || !isWorkedOn(&asset))
        return;
    FeedEntry& start = entries.emplace_back();
    start.kind = done.empty() ? FeedEntry::Kind::Present : FeedEntry::Kind::Step;
    start.title = localized("FeedStart", "Before these steps");
    start.action = walk(&asset, kUndo, done.size());
    start.actionTitle = back;
}

} // namespace

void StepFeed::addEntries(Vs::Document& document, std::vector<FeedEntry>& entries)
{
    for (unsigned i = 0; i < document.assets(); ++i)
        addSteps(*document.asset(i), entries);
}

} // namespace Vu
