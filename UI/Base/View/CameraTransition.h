#pragma once

#include "Server/Base/Require.h"
#include "Server/Base/StrongRef.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "UI/Base/View/TransitionMgr.h"

namespace Vu {

/// Glides a camera from one state to another.
class CameraTransition : public Vs::Implements<CameraTransition, TransitionItem>
{
public:
    /// For `transition->add`, which takes it over.
    [[nodiscard]] static CameraTransition* make(Transition* transition,
                                                const Vs::Scene::CameraParameters& before,
                                                const Vs::Scene::CameraParameters& after,
                                                Vs::Scene::Camera* camera);

    void apply(double fraction) override;
    bool endAt(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end) override;

private:
    CameraTransition(const Vs::Scene::CameraParameters& before, const Vs::Scene::CameraParameters& after,
                     Vs::Scene::Camera* camera)
        : m_before(before), m_after(after), m_camera(camera)
    {
        Vs::require(camera != nullptr, "a camera that glides is there");
    }

    Vs::Scene::CameraParameters m_before, m_after;
    Vs::StrongRef<Vs::Scene::Camera> m_camera;
};

/// Tells who records a transcript, by being built, that a command has put the camera somewhere.
class TranscriptCameraTrigger
{
public:
    explicit TranscriptCameraTrigger(Vs::Scene::Camera* camera);

    /// The one who records; null for nobody.
    using Recorder = void (*)(Vs::Scene::Camera*);
    static void recorder(Recorder recorder);
};

} // namespace Vu
