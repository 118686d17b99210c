#include "UI/Base/Session/SpaceMouseEventSite.h"

#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/Private/TouchNavigation.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <dlfcn.h>
#include <spnav.h>
#include <sys/socket.h>

namespace Vu {

// The library for such devices, which few machines have: opened only where it exists.
class SpaceMouseEventSite::Driver
{
public:
    /// Null if the library isn't there, or no daemon answers it.
    static std::unique_ptr<Driver> open()
    {
        std::unique_ptr<Driver> driver(new Driver);
        if (!driver->m_library || !driver->find() || driver->m_open() != 0)
            return nullptr;
        driver->m_isOpen = true;
        return driver;
    }
    ~Driver()
    {
        if (m_isOpen)
            m_close();
        if (m_library)
            dlclose(m_library);
    }

    /// What becomes readable when an event comes.
    int fd() const { return m_fd(); }
    /// Whether the daemon has closed the line, which then stays readable.
    bool gone() const
    {
        char byte;
        return m_fd() < 0 || ::recv(m_fd(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
    }
    /// False if there is none.
    bool next(spnav_event& event) const { return m_poll(&event) != 0; }

private:
    Driver() : m_library(dlopen("libspnav.so.0", RTLD_NOW | RTLD_LOCAL)) {}

    bool find()
    {
        return find(m_open, "spnav_open") && find(m_close, "spnav_close") && find(m_fd, "spnav_fd") &&
               find(m_poll, "spnav_poll_event");
    }
    template <class Function>
    bool find(Function& function, const char* name)
    {
        function = reinterpret_cast<Function>(dlsym(m_library, name));
        return function != nullptr;
    }

    void* m_library;
    bool m_isOpen = false;
    decltype(&spnav_open) m_open = nullptr;
    decltype(&spnav_close) m_close = nullptr;
    decltype(&spnav_fd) m_fd = nullptr;
    decltype(&spnav_poll_event) m_poll = nullptr;
};

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
    m_driver = Driver::open();
    if (!m_driver)
        return;
    auto* notifier = new QSocketNotifier(m_driver->fd(), QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this, notifier] {
        read();
        if (m_driver->gone())
            notifier->setEnabled(false);
    });
}

SpaceMouseEventSite::~SpaceMouseEventSite() = default;

void SpaceMouseEventSite::read()
{
    for (spnav_event event; m_driver->next(event);)
        if (event.type == SPNAV_EVENT_MOTION)
            TouchNavigation(SceneUtilities::getActiveAssetGraphicView())
                .move({.right = event.motion.x,
                       .up = event.motion.y,
                       .near = event.motion.z,
                       .turnRight = event.motion.rx,
                       .turnUp = event.motion.ry,
                       .turnNear = event.motion.rz});
}

} // namespace Vu
