#pragma once

#include "Server/DataModel/Model/ModelSource.h"

#include <deque>
#include <map>
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

    void begin(const std::wstring& name);
    bool isOpen() const { return m_isOpen; }
    /// What the open change has touched so far.
    Extent openExtent() const { return m_open.extent(); }

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
    unsigned undoSteps() const { return static_cast<unsigned>(m_undo.size()); }
    unsigned redoSteps() const { return static_cast<unsigned>(m_redo.size()); }
    /// Of the next step; empty if there is none.
    std::wstring undoName() const { return m_undo.empty() ? std::wstring() : m_undo.back().name; }
    std::wstring redoName() const { return m_redo.empty() ? std::wstring() : m_redo.back().name; }

private:
    struct Difference
    {
        std::wstring before, after;
    };
    struct Step
    {
        std::wstring name;
        bool model = false;
        std::map<std::string, Difference> settings;
        Extent extent() const { return {model, !settings.empty()}; }
    };

    void enter(ModelKernel& kernel);
    void put(const std::string& key, const std::wstring& value);
    void putAll(const Step& step, std::wstring Difference::*side);

    ModelSource& m_source;
    Settings& m_settings;
    bool m_isOpen = false;
    Step m_open;
    std::deque<Step> m_undo, m_redo; ///< The last is the next.
};

} // namespace Vs
