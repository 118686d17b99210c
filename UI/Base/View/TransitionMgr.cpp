#include "UI/Base/View/TransitionMgr.h"

#include "Server/Base/Require.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/Private/ReducedMotion.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Vu {
namespace {

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool somebodyLooks()
{
    return somebodyIsThere() && !Vs::TranscriptMgr::get()->replaying() && !motionIsReduced();
}

/// Eases in and out.
double eased(double fraction)
{
    return fraction * fraction * (3.0 - 2.0 * fraction);
}

} // namespace

/// Plays the manager's transitions from the idle queue, one step each round.
class PlayTransitionTask : public Vs::Implements<PlayTransitionTask, Vs::Task>
{
public:
    bool run() override { return !TransitionMgr::get()->step(); }
};

void Transition::apply(double fraction) const
{
    for (const auto& item : m_items)
        item->apply(fraction);
}

bool Transition::endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end) const
{
    return std::any_of(m_items.rbegin(), m_items.rend(),
                       [&](const auto& item) { return item->endAt(camera, end); });
}

TransitionMgr* TransitionMgr::get()
{
    static auto* const manager = new TransitionMgr;
    return manager;
}

Transition* TransitionMgr::currentTransition() const
{
    if (m_collecting || m_queue.empty())
        return m_collecting.get();
    return m_queue.front().get();
}

Transition* TransitionMgr::beginTransition()
{
    Vs::assertMainThread();
    if (m_collecting)
        return nullptr;
    if (m_seen)
        finish();
    for (const auto& transition : m_queue)
        transition->apply(1.0);
    m_collecting = std::make_unique<Transition>();
    return m_collecting.get();
}

void TransitionMgr::endTransition()
{
    std::unique_ptr<Transition> collected = std::move(m_collecting);
    if (collected && !collected->empty())
        m_queue.push_back(std::move(collected));
    if (m_queue.empty())
        return;
    if (!somebodyLooks()) {
        finish();
        return;
    }
    start();
    if (!std::exchange(m_tasked, true))
        Application::get()->idleTasks()->add(new PlayTransitionTask);
}

void TransitionMgr::start()
{
    m_started = now();
    m_queue.front()->apply(0.0);
}

/// Returns whether there is more to play.
bool TransitionMgr::step()
{
    m_seen = true;
    if (!m_queue.empty()) {
        const double fraction = (now() - m_started) * 1000.0 / m_queue.front()->period();
        if (fraction < 1.0) {
            m_queue.front()->apply(eased(fraction));
            return true;
        }
        const std::unique_ptr<Transition> ending = std::move(m_queue.front());
        m_queue.pop_front();
        ending->apply(1.0);
    }
    m_seen = m_tasked = !m_queue.empty();
    if (m_tasked)
        start();
    return m_tasked;
}

void TransitionMgr::endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end) const
{
    if (m_collecting && m_collecting->endAt(camera, end))
        return;
    for (auto transition = m_queue.rbegin(); transition != m_queue.rend(); ++transition)
        if ((*transition)->endAt(camera, end))
            return;
}

void TransitionMgr::finish()
{
    m_seen = false;
    const auto ending = std::exchange(m_queue, {});
    for (const auto& transition : ending)
        transition->apply(1.0);
}

} // namespace Vu
