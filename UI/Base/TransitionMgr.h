#pragma once

#include "Server/Base/Object.h"

#include <memory>
#include <vector>

namespace Vu {

/// Something that is played over a certain time.
class AnimatedTask : public Vs::Implements<AnimatedTask>
{
public:
    /// Long enough to be followed by the eye, short enough not to be waited for.
    static constexpr unsigned kPeriod = 280;

    /// How long it takes, in milliseconds; kPeriod until it is set.
    unsigned period() const { return m_period; }
    void period(unsigned milliseconds) { m_period = milliseconds; }

private:
    unsigned m_period = kPeriod;
};

/// One thing that changes over time during a transition.
class TransitionItem : public Vs::Implements<TransitionItem>
{
public:
    /// Shows the state at `fraction` of the way, from 0 to 1. The last call is with exactly 1.
    virtual void apply(double fraction) = 0;
};

/// A group of changes that are played together.
class Transition : public Vs::Implements<Transition, AnimatedTask>
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
/// wherever nobody looks: headless, while a transcript is replayed, in test runs, or with animations switched
/// off.
class TransitionMgr : public Vs::Implements<TransitionMgr>
{
public:
    static TransitionMgr* get();

    /// Starts collecting. A transition that still plays is brought to its end first. Null while one is being
    /// collected.
    Transition* beginTransition();
    /// The one that is being collected, or else the one that plays; null if there is none.
    Transition* currentTransition() const { return m_collecting ? m_collecting.get() : m_playing.get(); }
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
