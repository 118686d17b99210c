#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/CameraParameters.h"
#include "UI/Base/Session/SessionEvents.h"

#include <boost/uuid/uuid.hpp>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Scene {
class Camera;
}

namespace Vu {

/// Makes a recording include state that no command sets: the selection of the active session and the position
/// of its camera. Each is written when it differs from what the lines so far have produced, at the end of the
/// event or before the next command. Private to the host.
class StateRecorder : public SessionEventSite, private Vs::SelectionSetSite
{
public:
    StateRecorder();
    ~StateRecorder() override;

    /// A recording begins: nothing counts as different yet.
    void begin();
    /// Writes whatever is different.
    void write();
    /// Writes the camera if it is different.
    void writeCamera();
    /// Writes the identifiers by which later lines know the new document, unless `line` already gives them.
    void writeDocuments(const std::wstring& line);
    /// Writes the camera after a fit: the same fit gives a different camera in another canvas.
    void writeFitted();
    /// Takes the current state as what the lines written so far produce.
    void accept();
    /// The camera was moved by hand or by a command, and may still be gliding there.
    void cameraMoved(Vs::Scene::Camera* camera);

    /// Everything that a line sets of a camera: position, target, up, clip planes, extents and projection.
    using CameraState = std::array<double, 14>;

private:
    static CameraState stateOf(const Vs::Scene::CameraParameters& at);
    /// Writes the line, once the camera has no more digits than a person has use for.
    void writeWhereIs(Vs::Scene::Camera& camera);
    /// The same for one that still glides.
    void writeWhereEnds(const Vs::Scene::Camera& camera, const Vs::Scene::CameraParameters& end);
    /// Writes which of several split views is active, if that has changed.
    void writeActiveView();

    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void sessionClosed(SessionEvent* event) override;
    void selectionSetChanged() override;
    /// Writes, before the first line of a recording, what restores what was open when it began, or says what
    /// can't be restored.
    void writeBeginning();
    void follow(AssetSession* session);
    void writeSelection();

    AssetSession* m_session = nullptr;           ///< Whose selection is listened to.
    std::vector<boost::uuids::uuid> m_documents; ///< Those that existed before.
    bool m_tellsBeginning = false;               ///< Still to be written.
    bool m_selectionDiffers = false;
    bool m_writeLater = false;
    size_t m_activeView = 0;                           ///< As set by the lines so far; 0 while unknown.
    std::optional<CameraState> m_camera;               ///< As set by the lines so far; nothing while unknown.
    std::optional<Vs::Scene::CameraParameters> m_goal; ///< Where the running command has moved it.
    uint64_t m_begun = 0; ///< Fits up to this camera revision happened before the recording.
    std::map<const Vs::Scene::Camera*, uint64_t> m_fits; ///< The last fit of each that a line covers.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
