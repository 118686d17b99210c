// The transactions of the subject area "Script": everything between the beginning of one and its end is one
// step.

#include "UI/Base/Script/ScriptTransactions.h"

#include "Server/Base/TextCommand.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/SteppedTransaction.h"
#include "Server/DataModel/Transaction.h"
#include "Server/DataModel/TransactionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/ActiveAssetUtils.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Vu {

namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Script";

/// The transactions that scripts have begun, the outermost first. What a line does inside is part of the
/// outermost's step: neither a failing line nor a rolled-back inner transaction undoes anything else with it.
class OpenTransactions : public Vs::AssetEventSite
{
public:
    static OpenTransactions& get()
    {
        // Never destroyed: models may close until the process ends.
        static auto* const transactions = new OpenTransactions;
        return *transactions;
    }

    void begin(Vs::Asset* asset, const std::wstring& name)
    {
        Open open{asset, name, asset->isDirty(false)};
        const bool inside = isAnyOpen(asset);
        if (!inside && Vs::TransactionMgr(asset).currentTransaction()->parent())
            open.part = std::make_unique<Vs::Transaction>(asset, name);
        else if (!inside)
            open.whole = std::make_unique<Vs::SteppedTransaction>(asset, name);
        open.stepsBefore = Vs::SteppedTransaction::steps(asset);
        m_open.push_back(std::move(open));
    }
    size_t open() const { return m_open.size(); }
    const std::wstring& lastName() const { return m_open.back().name; }
    /// Whether a step of the innermost one isn't finished.
    bool lastIsHeld() const { return m_open.back().whole && m_open.back().whole->hasOpenStep(); }
    /// Rolls back the innermost one.
    void drop()
    {
        Open last = std::move(m_open.back());
        m_open.pop_back();
        takeBack(last);
    }

    /// Ends the innermost one. Returns the reason if it couldn't be kept or ended.
    std::wstring end(bool commit)
    {
        if (m_open.empty())
            return localized("ScriptNoTransaction", "No transaction was begun.");
        if (lastIsHeld())
            return localized("ScriptCommandRuns",
                             "A command that is running has not finished its step: commit or cancel it "
                             "before.");
        if (!commit) {
            drop();
            return {};
        }
        Open last = std::move(m_open.back());
        m_open.pop_back();
        if (!last.asset)
            return localized("ScriptTransactionClosed", "The model was closed before the transaction ended.");
        if (last.part && last.part->isBroken())
            return localized("ScriptTransactionBroken",
                             "A part of the transaction failed or was taken back, and with it the whole.");
        if (last.part)
            last.part->commit();
        if (last.whole)
            last.whole->commit();
        return {};
    }

    /// The script may still end the transaction later, but its changes are lost.
    void assetClosed(Vs::AssetEvent* event) override
    {
        for (auto open = m_open.rbegin(); open != m_open.rend(); ++open)
            if (open->asset == event->asset()) {
                open->part.reset();
                open->whole.reset();
                open->asset = nullptr;
            }
    }

private:
    struct Open
    {
        Vs::Asset* asset; ///< Null when it was closed.
        std::wstring name;
        bool wasDirty;
        size_t stepsBefore = 0;
        std::unique_ptr<Vs::SteppedTransaction> whole; ///< Of the outermost in an asset,
        std::unique_ptr<Vs::Transaction> part;         ///< unless another change of it was open already.
    };

    OpenTransactions() { Vs::AssetEventSource::get()->subscribe(this); }

    bool isAnyOpen(const Vs::Asset* asset) const
    {
        return std::any_of(m_open.begin(), m_open.end(),
                           [&](const Open& open) { return open.asset == asset; });
    }
    static void takeBack(Open& open)
    {
        if (!open.asset)
            return;
        if (open.whole && !open.whole->hasOpenStep())
            open.whole->abort();
        else if (!open.part)
            Vs::SteppedTransaction::undoTo(open.asset, open.stepsBefore);
        open.part.reset();
        if (open.wasDirty || !open.whole)
            return;
        // It is as it was saved, except for what doesn't need saving.
        const bool smudged = open.asset->isSmudge();
        open.asset->markClean();
        if (smudged)
            open.asset->markSmudge();
    }

    std::vector<Open> m_open;
};

class TextCmdScriptBegin : public Vs::PythonEntry<TextCmdScriptBegin, Vs::TextCommand>
{
public:
    TextCmdScriptBegin()
        : PythonEntry(kArea, L"BeginTransaction",
                      L"<name> Begins a step that lasts until it is committed or aborted", "%s", false, true)
    {
    }
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::Asset* asset = ActiveAssetUtils::asset();
        if (!asset)
            return {1, localized("ScriptNoModel", "There is no active model.")};
        OpenTransactions::get().begin(asset, parameters.parameters() > 0 ? parameters[0] : L"Script");
        return {0, {}};
    }
};

template <bool kCommit>
class TextCmdScriptEnd : public Vs::PythonEntry<TextCmdScriptEnd<kCommit>, Vs::TextCommand>
{
public:
    TextCmdScriptEnd()
        : Vs::PythonEntry<TextCmdScriptEnd<kCommit>, Vs::TextCommand>(
              kArea, kCommit ? L"CommitTransaction" : L"AbortTransaction",
              kCommit ? L"Keeps the step that was begun last" : L"Takes the step that was begun last back",
              "", false, true)
    {
    }
    TextCommandResult execute(const TextCommandParameters&) override
    {
        std::wstring reason = OpenTransactions::get().end(kCommit);
        return {reason.empty() ? 0u : 1u, std::move(reason)};
    }
};

TextCmdScriptBegin theBegin;
TextCmdScriptEnd<true> theCommit;
TextCmdScriptEnd<false> theAbort;

} // namespace

size_t ScriptTransactions::open()
{
    return OpenTransactions::get().open();
}

std::wstring ScriptTransactions::takeBackTo(size_t count)
{
    OpenTransactions& transactions = OpenTransactions::get();
    std::wstring names;
    while (transactions.open() > count) {
        names = L'"' + transactions.lastName() + (names.empty() ? L"\"" : L"\", ") + names;
        // Whatever is still working on a step of it is stopped as well.
        if (transactions.lastIsHeld())
            CommandMgr::terminateAllCommands(ETerminationReason::Cancel);
        transactions.drop();
    }
    return names.empty() ? names
                         : localizedFormat("ScriptTransactionLeft",
                                           "The transaction %1% was still open at the end. What was done in "
                                           "it is taken back.",
                                           names);
}

} // namespace Vu
