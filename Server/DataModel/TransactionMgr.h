#pragma once

#include "Server/Base/Require.h"
#include "Server/DataModel/TransactionNode.h"

#include <memory>
#include <string>

namespace Vs {

class Asset;
class TransactionStepUserCache;

/// The way to an asset's history for whoever shows it or walks in it: cheap to make, and as short-lived as
/// the call that needs it. Main thread only.
class TransactionMgr
{
public:
    /// The asset must be there as long as this object.
    explicit TransactionMgr(Asset* asset) : m_asset(asset)
    {
        require(asset != nullptr, "a history is that of an asset");
    }

    /// The root of the tree.
    const TransactionNode* sessionTransaction() const;
    /// The innermost that is open and not only a preview: a change, else one that is made in steps, else the
    /// session's.
    const TransactionNode* currentTransaction() const;

    /// Whether the steps back to that one, itself included, could be taken back now; without one, the last
    /// step. False while a transaction is open, in steps or not.
    [[nodiscard]] bool canUndo(const TransactionNode* step) const;
    [[nodiscard]] bool canRedo(const TransactionNode* step) const;
    /// Takes back all steps to that one, itself included; without one, the last. Stops at a step that can't
    /// be. Returns whether all were.
    bool undo(const TransactionNode* step);
    bool redo(const TransactionNode* step);

    /// Has the session's last step keep this, as TransactionNode::userCache. There must be one.
    void keepWithLast(std::shared_ptr<TransactionStepUserCache> cache);

    /// Tells the key of the command that is changing an asset just now. Installed by the library that knows
    /// the commands; without one, steps have no key.
    using CmdKeySource = std::wstring (*)(const Asset*);
    static void cmdKeySource(CmdKeySource source);
    [[nodiscard]] static std::wstring cmdKeyNow(const Asset* asset);

private:
    Asset* m_asset;
};

} // namespace Vs
