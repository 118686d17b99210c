#pragma once

#include "Server/DataModel/TransactionNode.h"

#include <string>

namespace Vs {

class Asset;

/// A change of an asset that is made in steps, of which the last ones can be taken back and done again while
/// the whole is open. Each Transaction in between is a step, or if it has no TransactionStepUserCache a part
/// of the one before it. Aborted by its destructor unless it was committed.
class [[nodiscard]] SteppedTransaction
{
public:
    /// `name` is what the undo list shows of the whole. Throws std::runtime_error if another change of the
    /// asset is open, or its document is read-only and a handler keeps it from being changed.
    SteppedTransaction(Asset* asset, const std::wstring& name);
    ~SteppedTransaction();
    SteppedTransaction(const SteppedTransaction&) = delete;
    SteppedTransaction& operator=(const SteppedTransaction&) = delete;

    /// Whether there is one of that asset.
    [[nodiscard]] static bool isOpen(const Asset* asset);

    /// Its place in the tree of transactions, with the steps as its changes; only while it is open.
    const TransactionNode& node() const;
    /// False if there is none, or a transaction is open.
    bool undoStep();
    bool redoStep();
    /// How many transactions were committed in it and not taken back; 0 if none is open.
    [[nodiscard]] static size_t steps(const Asset* asset);
    /// Takes back all but the first `steps` of them, which can't be done again. Does nothing while a
    /// transaction is open.
    static void undoTo(Asset* asset, size_t steps);
    /// Whether a transaction is open in it, so that it can't end yet.
    bool hasOpenStep() const;

    /// The steps that are done become one of the asset's. If they changed nothing, there is none.
    void commit();
    /// Takes them all back. Neither may be called while a transaction is open.
    void abort();

private:
    Asset* m_asset;
    bool m_open = true;
};

} // namespace Vs
