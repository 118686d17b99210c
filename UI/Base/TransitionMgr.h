#pragma once

#include "Server/Base/Object.h"

#include <memory>
#include <vector>

namespace Vu {

/// One thing that changes over time during a transition.
class TransitionItem : public Vs::Implements<TransitionItem>
{
public:
    /// Shows the state at `fraction` of the way, from 0 to 1. The last call is with exactly 1.
    virtual void apply(double fraction) = 0;
};

/// A group of changes that are played together.
class Transition : public Vs::Implements<Transition>
{
public:
    /// Takes the item over.
    void add(TransitionItem* item) { m_items.emplace_back(item); }
    bool empty() const { return m_items.empty(); }

private:
    friend class TransitionMgr;
    std::vector<std::unique_ptr<TransitionItem>> m_items;
};

/// Plays transitions in the window. What is changed is at its end state as soon as `endTransition` returns
/// wherever nobody looks: headless, in test runs, or with animations switched off.
class TransitionMgr : public Vs::Implements<TransitionMgr>
{
public:
    static TransitionMgr* get();

    /// Starts collecting. A transition that still plays is brought to its end first. Null while one is being
    /// collected.
    Transition* beginTransition();
    /// Plays what was collected.
    void endTransition();
    /// Brings what plays to its end at once.
    void finish();
    bool playing() const { return m_playing != nullptr; }

private:
    friend class PlayTransitionTask;
    TransitionMgr() = default;
    bool step();

    std::unique_ptr<Transition> m_collecting;
    std::unique_ptr<Transition> m_playing;
    double m_started = 0;
};

} // namespace Vu
