// The transactions of the subject area "Script": what runs between a beginning and its end is one step.

#include "Server/Base/TextCommand.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Transaction.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/ActiveAssetUtils.h"

#include <memory>
#include <vector>

namespace Vu {

namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Script";

/// The transactions that scripts have begun, the outermost first.
class ScriptTransactions : public Vs::AssetEventSite
{
public:
    static ScriptTransactions& get()
    {
        // Never destroyed: models may close until the process ends.
        static auto* const transactions = new ScriptTransactions;
        return *transactions;
    }

    void begin(Vs::Asset* asset, const std::wstring& name)
    {
        m_open.push_back({asset, std::make_unique<Vs::Transaction>(asset, name)});
    }
    /// Ends the last one. Returns the reason if it could not be kept.
    std::wstring end(bool commit)
    {
        if (m_open.empty())
            return localized("ScriptNoTransaction", "No transaction was begun.");
        const Open last = std::move(m_open.back());
        m_open.pop_back();
        if (!commit)
            return {};
        if (!last.transaction)
            return localized("ScriptTransactionClosed", "The model was closed before the transaction ended.");
        if (last.transaction->isBroken())
            return localized("ScriptTransactionBroken",
                             "A part of the transaction failed or was taken back, and with it the whole.");
        last.transaction->commit();
        return {};
    }

    /// The script may end the transaction later, but has lost what it did.
    void assetClosed(Vs::AssetEvent* event) override
    {
        for (auto open = m_open.rbegin(); open != m_open.rend(); ++open)
            if (open->asset == event->asset())
                open->transaction.reset();
    }

private:
    struct Open
    {
        Vs::Asset* asset;
        std::unique_ptr<Vs::Transaction> transaction; ///< Null when the asset was closed.
    };

    ScriptTransactions() { Vs::AssetEventSource::get()->subscribe(this); }

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
        ScriptTransactions::get().begin(asset, parameters.parameters() > 0 ? parameters[0] : L"Script");
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
        std::wstring reason = ScriptTransactions::get().end(kCommit);
        return {reason.empty() ? 0u : 1u, std::move(reason)};
    }
};

TextCmdScriptBegin theBegin;
TextCmdScriptEnd<true> theCommit;
TextCmdScriptEnd<false> theAbort;

} // namespace

} // namespace Vu
