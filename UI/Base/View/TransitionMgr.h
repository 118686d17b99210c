#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"

#include <deque>
#include <memory>
#include <vector>

namespace Vs::Scene {
class Camera;
struct CameraParameters;
} // namespace Vs::Scene

namespace Vu {

/// An animation of a certain duration.
class AnimatedTask : public Vs::Implements<AnimatedTask>
{
public:
    /// Long enough for the eye to follow, short enough not to be a wait.
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
    /// Makes the camera end there, if this is what glides it; returns whether it is.
    virtual bool endAt(const Vs::Scene::Camera&, const Vs::Scene::CameraParameters&) { return false; }
};

/// A group of changes that are played together.
class Transition : public Vs::Implements<Transition, AnimatedTask>
{
public:
    /// Takes the item over.
    void add(TransitionItem* item)
    {
        Vs::require(item != nullptr, "an item of a transition is there");
        m_items.emplace_back(item);
    }
    bool empty() const { return m_items.empty(); }

private:
    friend class TransitionMgr;
    void apply(double fraction) const;
    bool endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end) const;

    std::vector<std::unique_ptr<TransitionItem>> m_items;
};

/// Plays transitions in the window. Those that are ended within one event play one after the other; one that
/// is begun later doesn't wait for them but brings them to their end. Everything is in its final state as
/// soon as `endTransition` returns wherever nobody watches: headless, while a transcript is replayed, in test
/// runs, or with animations switched off.
class TransitionMgr : public Vs::Implements<TransitionMgr>
{
public:
    static TransitionMgr* get();

    /// Starts collecting. What is changed stands at the end of all transitions before, until `endTransition`
    /// shows their beginning. Null while one is being collected.
    [[nodiscard]] Transition* beginTransition();
    /// The one that is being collected, or else the one that plays; null if there is none.
    [[nodiscard]] Transition* currentTransition() const;
    /// Plays what was collected, behind what is to be played already.
    void endTransition();
    /// Gives the camera another end than that to which the last transition takes it.
    void endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end) const;
    /// Finishes everything that plays, or is queued, at once.
    void finish();
    bool playing() const { return !m_queue.empty(); }

private:
    friend class PlayTransitionTask;
    TransitionMgr() = default;
    bool step();
    void start();

    std::unique_ptr<Transition> m_collecting;
    std::deque<std::unique_ptr<Transition>> m_queue; ///< The first one plays.
    double m_started = 0;
    bool m_seen = false;   ///< The event is over in which the queue was begun.
    bool m_tasked = false; ///< A task plays the queue.
};

} // namespace Vu
