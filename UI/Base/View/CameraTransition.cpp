#include "UI/Base/View/CameraTransition.h"

namespace Vu {

namespace {

TranscriptCameraTrigger::Recorder installedRecorder = nullptr;

} // namespace

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

bool CameraTransition::endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end)
{
    if (&camera != m_camera)
        return false;
    m_after = end;
    return true;
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
