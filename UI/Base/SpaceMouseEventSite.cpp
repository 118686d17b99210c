#include "UI/Base/SpaceMouseEventSite.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/SceneUtilities.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdint>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Vu {
namespace {

/// Where the daemon of such devices listens on this system.
constexpr const char* kSocket = "/var/run/spnav.sock";
/// An event is eight numbers: its kind, three shifts, three turns, a period.
constexpr size_t kNumbers = 8;
constexpr int32_t kMotion = 0;
/// At full deflection a device gives about 350.
constexpr double kPixelsPerUnit = 1.0 / 60.0;
constexpr double kZoomPerUnit = 1.0 / 20000.0;

} // namespace

SpaceMouseEventSite* SpaceMouseEventSite::get()
{
    static SpaceMouseEventSite site;
    return &site;
}

SpaceMouseEventSite::SpaceMouseEventSite()
{
    // A program without a loop turns no camera by hand.
    if (!QCoreApplication::instance())
        return;
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, kSocket, sizeof(address.sun_path) - 1);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(socket);
        return;
    }
    m_socket = socket;
    auto* notifier = new QSocketNotifier(socket, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this, notifier] {
        if (!read())
            notifier->setEnabled(false);
    });
}

SpaceMouseEventSite::~SpaceMouseEventSite()
{
    if (m_socket >= 0)
        ::close(m_socket);
}

bool SpaceMouseEventSite::read()
{
    int32_t event[kNumbers];
    const ssize_t size = ::recv(m_socket, event, sizeof(event), MSG_DONTWAIT);
    if (size == 0)
        return false; // The daemon has gone.
    GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    if (size != static_cast<ssize_t>(sizeof(event)) || event[0] != kMotion || !view ||
        view->viewFragments().empty())
        return true;
    Vs::Scene::Camera* camera = view->viewFragments().front()->camera();
    const double pixel = camera->extentsWidth() / 1000.0;
    camera->dolly(camera->right() * (-event[1] * kPixelsPerUnit * pixel) +
                  camera->screenUp() * (-event[2] * kPixelsPerUnit * pixel));
    camera->zoom(1.0 + event[3] * kZoomPerUnit);
    camera->orbit(event[5] * kPixelsPerUnit, event[4] * kPixelsPerUnit);
    return true;
}

} // namespace Vu
