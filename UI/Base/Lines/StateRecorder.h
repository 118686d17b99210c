#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
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
    /// Writes where a fit has put the camera: the same fit comes to something else in another canvas.
    void writeFitted();
    /// What is now is what the lines written so far bring about.
    void accept();
    /// The camera was put somewhere by hand or by a command, and may yet have to glide there.
    void cameraMoved(const Vs::Scene::Camera* camera);

    /// All that a line sets of a camera: position, target, up, clip planes, extents and projection.
    using CameraState = std::array<double, 14>;

private:
    static CameraState stateOf(const Vs::Scene::Camera& camera);
    /// Writes which of the views beside each other is the active one, if that is another one.
    void writeActiveView();

    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void sessionClosed(SessionEvent* event) override;
    void selectionSetChanged() override;
    /// Writes, before the first line of a recording, what brings back what was open when it began, or says
    /// what can't be brought back.
    void writeBeginning();
    void follow(AssetSession* session);
    void writeSelection();

    AssetSession* m_session = nullptr;           ///< Whose selection is listened to.
    std::vector<boost::uuids::uuid> m_documents; ///< Those that were there before.
    bool m_tellsBeginning = false;               ///< Still to be written.
    bool m_selectionDiffers = false;
    bool m_writeLater = false;
    size_t m_activeView = 0;             ///< As the lines have it; 0 while that isn't known.
    std::optional<CameraState> m_camera; ///< As the lines have it; nothing while that isn't known.
    std::optional<CameraState> m_goal;   ///< Where the running command has put it.
    uint64_t m_begun = 0;                ///< Fits up to this revision of cameras were before the recording.
    std::map<const Vs::Scene::Camera*, uint64_t> m_fits; ///< The last fit of each that a line tells of.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
