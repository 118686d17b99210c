#pragma once

#include "Server/Base/Status.h"

#include <memory>
#include <string>

namespace Vs {

class Asset;
class TransactionStepUserCache;

/// One undoable change of an asset: of its model and of its settings. Opened by its constructor; aborted by
/// its destructor unless it was committed. A transaction inside another one of the same asset joins it: its
/// abort undoes the outer one as well.
class [[nodiscard]] Transaction
{
public:
    /// Whether the change is made to be kept, or only to be looked at until it is aborted.
    enum class Purpose { Step, Preview };

    /// `name` is what the undo list shows. Throws std::runtime_error if the document is read-only and a
    /// handler keeps it from being changed.
    Transaction(Asset* asset, const std::wstring& name, Purpose purpose = Purpose::Step);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    bool isOpen() const { return m_open; }
    /// Whether one inside it was aborted, so that `commit` takes everything back.
    bool isBroken() const;
    /// Whether the change has touched anything yet.
    bool isChanged() const;
    /// Keeps the change as one undo step, brings the component tree up to date and tells the asset event
    /// sites. A transaction that changed nothing leaves no step, except inside of a SteppedTransaction. The
    /// cache, if there is one, goes with the step.
    void commit(std::shared_ptr<TransactionStepUserCache> cache = nullptr);
    /// Takes everything back.
    void abort();

    [[nodiscard]] static unsigned undoSteps(const Asset* asset);
    [[nodiscard]] static unsigned redoSteps(const Asset* asset);
    /// Name of the step that `undo` would take back; empty if there is none.
    [[nodiscard]] static std::wstring undoName(const Asset* asset);
    [[nodiscard]] static std::wstring redoName(const Asset* asset);
    /// False if there is nothing to undo or a transaction is open, or a SteppedTransaction.
    static bool undo(Asset* asset);
    static bool redo(Asset* asset);

private:
    Asset* m_asset;
    bool m_outermost;
    bool m_open = true;
};

} // namespace Vs
