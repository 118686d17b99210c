#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
#include "UI/Base/Session/SessionEvents.h"

#include <boost/uuid/uuid.hpp>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Scene {
class Camera;
}

namespace Vu {

/// Has a recording take down what is no command: what is selected in the active session, and where its camera
/// is. Each is written, once it differs from what the lines before have brought about, at the end of the
/// event or before the next command. Private to the host.
class StateRecorder : public SessionEventSite, private Vs::SelectionSetSite
{
public:
    StateRecorder();
    ~StateRecorder() override;

    /// A recording begins: nothing is different.
    void begin();
    /// Writes what is different.
    void write();
    /// Writes where the camera is, if that is different.
    void writeCamera();
    /// Writes under which identifiers the document that has come is known to the lines that follow, unless
    /// `line` tells already.
    void writeDocuments(const std::wstring& line);
    /// What is now is what the lines written so far bring about.
    void accept();
    /// The camera was put somewhere by hand.
    void cameraMoved(const Vs::Scene::Camera* camera);

private:
    /// All that a line sets of a camera, to tell whether it moved.
    using CameraState = std::array<double, 14>;
    static CameraState stateOf(const Vs::Scene::Camera& camera);

    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void sessionClosed(SessionEvent* event) override;
    void selectionSetChanged() override;
    void follow(AssetSession* session);
    void writeSelection();

    AssetSession* m_session = nullptr;           ///< Whose selection is listened to.
    std::vector<boost::uuids::uuid> m_documents; ///< Those that were there before.
    bool m_selectionDiffers = false;
    bool m_writeLater = false;
    std::optional<CameraState> m_camera; ///< As the lines have it; nothing while that isn't known.
};

} // namespace Vu
