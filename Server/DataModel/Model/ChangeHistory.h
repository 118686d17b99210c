#pragma once

#include "Server/DataModel/Model/ModelSource.h"
#include "Server/DataModel/TransactionNode.h"

#include <map>
#include <memory>
#include <string>

namespace Vs {

/// The changes of one asset that can be taken back: of its model, whose differences the kernel keeps, and of
/// its settings, whose differences are kept here. The kernel is loaded by a change of the model alone. One
/// change at a time; Transaction is what others use.
class ChangeHistory
{
public:
    using Settings = std::map<std::string, std::wstring>;

    /// What a step touched.
    struct Extent
    {
        bool model = false;
        bool settings = false;
        bool nothing() const { return !model && !settings; }
    };

    /// Both must outlive the history.
    ChangeHistory(ModelSource& source, Settings& settings) : m_source(source), m_settings(settings) {}

    void begin(const std::wstring& name, const std::wstring& cmdKey);
    bool isOpen() const { return m_open != nullptr; }
    /// What the open change has touched so far.
    Extent openExtent() const { return m_open ? extentOf(*m_open) : Extent(); }
    /// The root of all steps, and the change that is open; null if there is none.
    const TransactionNode& session() const { return m_session; }
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
    /// Sets a value, as a part of the open change if there is one; empty text removes it. Returns whether it
    /// was another before.
    bool set(const std::string& key, const std::wstring& value);

    /// Ends the open change as one step, unless nothing was changed, and forgets what could be redone.
    Extent commit();
    /// Takes the open change back.
    Extent abort();

    /// Takes one step, if there is one and no change is open; says what it touched.
    Extent undo();
    Extent redo();

private:
    using Step = TransactionNode;
    static Extent extentOf(const Step& step) { return {step.m_model, !step.m_settings.empty()}; }

    void enter(ModelKernel& kernel);
    void put(const std::string& key, const std::wstring& value);
    void putAll(const Step& step, std::wstring Step::Difference::*side);

    ModelSource& m_source;
    Settings& m_settings;
    Step m_session;
    std::unique_ptr<Step> m_open;
};

} // namespace Vs
