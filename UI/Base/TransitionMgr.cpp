#include "UI/Base/TransitionMgr.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Application.h"
#include "UI/Base/CameraTransition.h"
#include "UI/Base/UIBaseOptionGroup.h"

#include <chrono>

namespace Vu {
namespace {

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool somebodyLooks()
{
    return Application::get()->mainWidget() && !Application::headless() && !Application::testing() &&
           !Vs::TranscriptMgr::get()->replaying() && UIBaseOptionGroup::get()->animateCamera();
}

/// Starts and arrives gently.
double eased(double fraction)
{
    return fraction * fraction * (3.0 - 2.0 * fraction);
}

TranscriptCameraTrigger::Recorder installedRecorder = nullptr;

} // namespace

/// Plays the manager's transition from the idle queue, a step a round.
class PlayTransitionTask : public Vs::Implements<PlayTransitionTask, Vs::Task>
{
public:
    bool run() override { return !TransitionMgr::get()->step(); }
};

TransitionMgr* TransitionMgr::get()
{
    static auto* const manager = new TransitionMgr;
    return manager;
}

Transition* TransitionMgr::beginTransition()
{
    if (m_collecting)
        return nullptr;
    finish();
    m_collecting = std::make_unique<Transition>();
    return m_collecting.get();
}

void TransitionMgr::endTransition()
{
    std::unique_ptr<Transition> collected = std::move(m_collecting);
    if (!collected || collected->empty())
        return;
    m_playing = std::move(collected);
    if (!somebodyLooks()) {
        finish();
        return;
    }
    m_started = now();
    for (const auto& item : m_playing->m_items)
        item->apply(0.0);
    Application::get()->idleTasks()->add(new PlayTransitionTask);
}

/// Returns whether there is more to play.
bool TransitionMgr::step()
{
    if (!m_playing)
        return false;
    const double seconds = m_playing->period() / 1000.0;
    const double fraction = (now() - m_started) / seconds;
    if (!(fraction < 1.0)) {
        finish();
        return false;
    }
    for (const auto& item : m_playing->m_items)
        item->apply(eased(fraction));
    return true;
}

void TransitionMgr::finish()
{
    const std::unique_ptr<Transition> ending = std::move(m_playing);
    if (ending)
        for (const auto& item : ending->m_items)
            item->apply(1.0);
}

CameraTransition* CameraTransition::make(Transition*, const Vs::Scene::CameraParameters& before,
                                         const Vs::Scene::CameraParameters& after, Vs::Scene::Camera* camera)
{
    return new CameraTransition(before, after, camera);
}

void CameraTransition::apply(double fraction)
{
    if (fraction >= 1.0)
        m_after.applyTo(*m_camera);
    else
        m_before.towards(m_after, fraction).applyTo(*m_camera);
}

TranscriptCameraTrigger::TranscriptCameraTrigger(Vs::Scene::Camera* camera)
{
    if (installedRecorder && camera)
        installedRecorder(camera);
}

void TranscriptCameraTrigger::recorder(Recorder recorder)
{
    installedRecorder = recorder;
}

} // namespace Vu
