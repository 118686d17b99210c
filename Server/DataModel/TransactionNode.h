#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class ModelChange;
class TransactionStepUserCache;

/// A node of the tree of an asset's transactions. The root is the session's, which lasts as long as the asset
/// is open; the steps that can be taken back or done again are its changes. So are a running command's own
/// steps below the one of that command (SteppedTransaction). Owned by the asset's history: a pointer to a
/// step holds until the step is forgotten, whether it is done or undone meanwhile.
class TransactionNode
{
public:
    using Changes = std::deque<std::unique_ptr<TransactionNode>>;

    TransactionNode() = default;
    TransactionNode(const TransactionNode* parent, std::wstring userName, std::wstring cmdKey)
        : m_parent(parent), m_userName(std::move(userName)), m_cmdKey(std::move(cmdKey))
    {
    }
    TransactionNode(const TransactionNode&) = delete;
    TransactionNode& operator=(const TransactionNode&) = delete;

    /// Null for the session's.
    const TransactionNode* parent() const { return m_parent; }
    /// What the user reads in the undo list.
    const std::wstring& userName() const { return m_userName; }
    /// The key of the command that made the change; see TransactionMgr::cmdKeySource.
    const std::wstring& cmdKey() const { return m_cmdKey; }
    /// When it was committed; before that, when it was begun.
    std::chrono::system_clock::time_point time() const { return m_time; }
    /// Whether it touched anything, of the model or of the settings.
    bool isChanged() const { return m_touchesModel || !m_settings.empty(); }
    /// False for the one that is still open.
    bool isCommitted() const { return m_committed; }
    /// Whether it is open only to be looked at.
    bool isPreview() const { return m_preview; }

    /// The oldest first: the last is the next to be undone.
    const Changes& doneChanges() const { return m_done; }
    /// The first is the next to be redone.
    const Changes& undoneChanges() const { return m_undone; }
    /// The next step of each list; null if it is empty.
    const TransactionNode* transactionToUndo() const
    {
        return m_done.empty() ? nullptr : m_done.back().get();
    }
    const TransactionNode* transactionToRedo() const
    {
        return m_undone.empty() ? nullptr : m_undone.front().get();
    }

    /// Whether a step below it can be taken back, or done again, while it is open itself.
    bool canDoMidStep(bool undo) const
    {
        return m_parent && !m_committed && !(undo ? m_done : m_undone).empty();
    }
    /// What the maker of this step keeps with it; null if it keeps nothing.
    TransactionStepUserCache* userCache() const { return m_userCache.get(); }
    /// Those of the steps below it that can be taken back, or done again: the nearest to the present state
    /// first.
    std::vector<TransactionStepUserCache*> stepUserCaches(bool undo) const;

private:
    friend class ChangeHistory;
    struct Difference
    {
        std::wstring before, after;
    };

    const TransactionNode* m_parent = nullptr;
    std::wstring m_userName, m_cmdKey;
    std::chrono::system_clock::time_point m_time = std::chrono::system_clock::now();
    bool m_touchesModel = false;
    bool m_committed = false;
    bool m_preview = false;
    std::vector<std::shared_ptr<ModelChange>> m_model; ///< In the order in which they were made.
    std::map<std::string, Difference> m_settings;
    std::shared_ptr<TransactionStepUserCache> m_userCache;
    Changes m_done, m_undone;
};

} // namespace Vs
