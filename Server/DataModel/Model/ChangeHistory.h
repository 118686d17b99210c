#pragma once

#include "Server/Base/Require.h"
#include "Server/DataModel/Model/ModelSource.h"
#include "Server/DataModel/TransactionNode.h"

#include <map>
#include <memory>
#include <string>

namespace Vs {

/// The undoable changes of one asset: of its model, whose differences the kernel computes, and of its
/// settings. Only a change of the model loads the kernel. One change at a time; those made while a group is
/// open are steps of the group, which becomes one step in the end. Others use Transaction and
/// SteppedTransaction.
class ChangeHistory
{
public:
    using Settings = std::map<std::string, std::wstring>;

    /// How many steps of the session are kept.
    static constexpr size_t kUndoSteps = 100;

    /// What a step touched.
    struct Extent
    {
        bool model = false;
        bool settings = false;
        bool nothing() const { return !model && !settings; }
        void add(Extent other)
        {
            model |= other.model;
            settings |= other.settings;
        }
    };

    /// Both must outlive the history.
    ChangeHistory(ModelSource& source, Settings& settings) : m_source(source), m_settings(settings) {}

    void begin(const std::wstring& name, const std::wstring& cmdKey);
    bool isOpen() const { return m_open != nullptr; }
    /// Sets whether the open change is a preview.
    void openIsPreview(bool preview)
    {
        require(isOpen(), "a change is open");
        m_open->m_preview = preview;
    }
    /// What the open change has touched so far.
    Extent openExtent() const { return m_open ? extentOf(*m_open) : Extent(); }
    /// The root of all steps; the group and the change that are open, each null if there is none.
    const TransactionNode& session() const { return m_session; }
    const TransactionNode* group() const { return m_group.get(); }
    const TransactionNode* open() const { return m_open.get(); }

    /// Runs `work(ModelKernel&)` as a part of the open change.
    template <class Work>
    auto changeModel(Work&& work)
    {
        return m_source.withKernel([&](ModelKernel& kernel) {
            enter(kernel);
            return work(kernel);
        });
    }
    /// Sets a value, as a part of the open change if there is one; empty text removes it. Returns whether the
    /// value changed.
    bool set(const std::string& key, const std::wstring& value);

    /// Makes the kernel report what was touched so far, though the change stays open.
    void settle();
    /// Ends the open change as one step, and forgets what could be redone. One that changed nothing is no
    /// step of the session; in a group it is one. `cache` may be null.
    Extent commit(std::shared_ptr<TransactionStepUserCache> cache);
    /// TransactionNode::userCache of the session's last step, of which there must be one.
    void keepWithLast(std::shared_ptr<TransactionStepUserCache> cache)
    {
        require(!m_session.m_done.empty(), "there is a step to keep something with");
        m_session.m_done.back()->m_userCache = std::move(cache);
    }
    /// Undoes the open change.
    Extent abort();

    /// Undoes the nearest step of the group, or, without a group, of the session, if there is one and no
    /// change is open; reports what it touched.
    Extent undo();
    Extent redo();

    /// Only while nothing is open.
    void beginGroup(const std::wstring& name, const std::wstring& cmdKey);
    /// The steps that are done become one of the session's. Those that are undone are forgotten.
    Extent commitGroup();
    /// Undoes all steps. What could be redone before the group can be redone again.
    Extent abortGroup();

private:
    using Step = TransactionNode;
    static Extent extentOf(const Step& step) { return {step.m_touchesModel, !step.m_settings.empty()}; }

    Step& top() { return m_group ? *m_group : m_session; }
    void enter(ModelKernel& kernel);
    /// Undoes the step's changes of the model; afterwards it holds those that redo them.
    void revertModel(Step& step);
    void put(const std::string& key, const std::wstring& value);
    void putAll(const Step& step, std::wstring Step::Difference::*side);
    Extent keep(std::unique_ptr<Step> step);

    ModelSource& m_source;
    Settings& m_settings;
    Step m_session;
    std::unique_ptr<Step> m_group;
    std::unique_ptr<Step> m_open;
    bool m_kernelOpen = false; ///< A change of the kernel's is open.
};

} // namespace Vs
