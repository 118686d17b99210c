#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/ComponentsListener.h"
#include "Server/DataModel/Selection/SelectionCategory.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "UI/Base/Command/CommandInput.h"
#include "UI/Base/View/MouseEvents.h"

#include <memory>
#include <optional>

namespace Vs {
class SelectionFilter;
class SelectionMgr;
class Status;
} // namespace Vs

namespace Vu {

class CommandBase;
class PartFollower;
class SelectionPointer;

/// An input that the user fills by clicking in the canvas, while its command is active and its session's
/// selection isn't suspended. What a click would take is highlighted. One of a set's inputs takes the clicks
/// at a time: the one that was made current, else the first that isn't complete, else the last. One that
/// takes any number also takes what lies in a rubber band.
class SelectionCommandInput : public Vs::Implements<SelectionCommandInput, CommandInputBase>,
                              private Vs::SelectionSetSite,
                              private Vs::ComponentsListener
{
public:
    /// Whether the input takes part in the picking at all.
    enum class EState {
        Idle = 1,       ///< It keeps what it has.
        Collecting = 8, ///< The default.
    };

    static SelectionCommandInput* make(CommandInputSet* set, int number, Info* info);
    ~SelectionCommandInput() override;

    /// How many selections are wanted; with `exactly`, one more replaces the oldest. Default: at least one.
    void requiredQuantity(bool exactly, size_t quantity);
    /// What may be selected; not owned. Only the kinds of objects that it may accept are picked in the
    /// canvas. Null, the default, accepts everything, but components alone are picked.
    void requiredFilter(const Vs::SelectionFilter* filter) { m_filter = filter; }

    /// Adds the filters by which it is decided what is picked: the required one, and the kinds of objects
    /// that the user wants, all at first; of the resting command those that the user has chosen for it.
    void pickFilters(std::vector<const Vs::SelectionFilter*>& filters) const;

    /// Whether the input's selection is the session's own (SelectionMgr::selectionSet), which the browser
    /// shows and the commands on selected objects use, whoever changes it. A click then replaces the
    /// selection, and one off everything clears it. Of what lies at a place, the component is taken first,
    /// and its part once that is selected. Default false: the input collects for its command alone, and each
    /// click adds. Either way, a click with Ctrl or Shift adds an object or removes it again, and one with
    /// both takes what contains the object: the component, and on each further click the assembly above.
    bool replacesCurrentSelection() const { return m_current; }
    void replacesCurrentSelection(bool value);
    /// Whether the session's selection is cleared as the command ends. Only for an input that replaces it.
    /// Default true.
    bool clearSelectionOnCommandEnd() const { return m_clearAtEnd; }
    void clearSelectionOnCommandEnd(bool value) { m_clearAtEnd = value; }

    EState state() const { return m_state; }
    void state(EState value);
    /// Whether it is the input that takes the clicks.
    bool isCurrent() const;
    /// Makes it take the clicks until it is complete, or another one is made current.
    void makeCurrent();
    /// The input of a command that takes the clicks; null if there is none.
    static SelectionCommandInput* currentOf(const CommandBase* command);

    /// Does what a click does on a thing that is shown elsewhere than in a canvas, `modifiers` being those of
    /// mouse events. False if the input takes no clicks now, or refuses the thing.
    bool pick(const Vs::StrongRef<Vs::Selection>& selection, unsigned modifiers);
    /// What a click in the canvas would take there, if the input took the clicks; null for nothing.
    [[nodiscard]] Vs::StrongRef<Vs::Selection> under(const MouseEvent& event) const;

    const Vs::SelectionSet& selectionSet() const { return m_current ? *m_current : m_own; }
    /// Adds a selection as a click does. Returns false if a filter, the command, or a site of the event
    /// SelectionInputQuerySelectPermittedEvent refuses it.
    bool add(Vs::StrongRef<Vs::Selection> selection);
    /// Removes everything.
    void clear();
    /// Replaces its content by these, regardless of filters.
    void replace(const std::vector<Vs::StrongRef<Vs::Selection>>& selections);

    /// Whether the command needs the input filled. Default true; else it is valid as it is.
    void required(bool value) { m_required = value; }

    /// The paths of the objects (pathText). Several have bars between them, and those that hold a
    /// bar, a quote or a backslash stand in quotes.
    std::wstring valueAsString() const override;
    /// The text of a value that holds these paths.
    [[nodiscard]] static std::wstring valueOf(const std::vector<std::wstring>& paths);
    /// Takes one path as it stands, or several; a component's identifier stands for it, too. Objects that a
    /// click wouldn't take are not a value.
    bool valueFromString(const std::wstring& text) override;
    std::wstring displayText() const override;

    /// Cancels the rubber band being drawn; false if there is none.
    bool giveUp() override;
    void commandEnded() override;
    /// Keeps the paths of the objects, which may be called otherwise or be gone afterwards.
    void modelWillChange() override;
    /// What is missing is chosen next; a text that names nothing is a mistake.
    bool isAwaiting() const override { return !refused(); }

protected:
    SelectionCommandInput(CommandInputSet* set, int number, Info* info);
    std::wstring onWhyInvalid() const override;
    std::wstring whyRefused(const std::wstring& text) const override;

private:
    friend class SelectionPointer;
    using Selections = std::vector<Vs::StrongRef<Vs::Selection>>;
    /// Nothing, with errors, if a path is unknown.
    std::optional<Selections> named(const std::wstring& text, Vs::Status& status) const;
    Vs::SelectionSet& selections() { return m_current ? *m_current : m_own; }
    void selectionSetChanged() override;
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void leaveSession();
    void click(const Vs::StrongRef<Vs::Selection>& selection, unsigned modifiers);
    void takeHolder(const Vs::StrongRef<Vs::Selection>& holder);
    void take(const std::vector<Vs::StrongRef<Vs::Selection>>& banded, unsigned modifiers);
    /// Null while nothing may be picked.
    Vs::SelectionMgr* pickingManager() const;
    bool accepts(const Vs::StrongRef<Vs::Selection>& selection) const;
    bool isComplete() const;

    std::wstring textOf(const Vs::ObjectPath& path, const Vs::Asset& asset) const;

    Vs::SelectionSet m_own;
    std::vector<std::pair<Vs::ObjectPath, std::wstring>> m_texts; ///< From before the last change.
    Vs::SelectionSet* m_current = nullptr; ///< The session's; null if the input has its own.
    const Vs::SelectionFilter* m_filter = nullptr;
    Vs::ObjectKindFilter m_kinds; ///< What the user wants to pick.
    size_t m_quantity = 1;
    EState m_state = EState::Collecting;
    std::unique_ptr<SelectionPointer> m_pointer;
    std::unique_ptr<PartFollower> m_follower;
    bool m_exactly = false;
    bool m_clearAtEnd = true;
    bool m_required = true;
    bool m_preferred = false; ///< Was made current.
};

} // namespace Vu
