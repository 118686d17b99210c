#include "UI/Base/SpaceMouseEventSite.h"

#include "UI/Base/SceneUtilities.h"
#include "UI/Base/TouchNavigation.h"

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
    if (size == static_cast<ssize_t>(sizeof(event)) && event[0] == kMotion)
        TouchNavigation(SceneUtilities::getActiveAssetGraphicView())
            .move({.right = event[1],
                   .up = event[2],
                   .near = event[3],
                   .turnRight = event[4],
                   .turnUp = event[5],
                   .turnNear = event[6]});
    return true;
}

} // namespace Vu
