#include "UI/Application/HandOverReceiver.h"

#include "Server/Base/Strings.h"
#include "Server/Base/UniqueString.h"
#include "Server/Base/Warning.h"
#include "UI/Application/HandOverSocket.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/ProgramLink.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillet {
namespace {

using namespace HandOverSocket;

constexpr const wchar_t* kOpenCommand = L"OpenDocumentCommand";
constexpr const wchar_t* kHomeCommand = L"ManagementShellCommand";
/// Where the toolkit looks for the token when a window asks to come to the front.
constexpr const char* kTokenVariable = "XDG_ACTIVATION_TOKEN";

void run(const wchar_t* command, const std::wstring& path = {})
{
    Vu::CommandDefinition* definition = Vu::CommandDefinitionMgr::get()->findCommandDefinitionById(command);
    if (!definition)
        return;
    Vu::CommandContext context = Vu::CommandContext::activeContext();
    if (!path.empty())
        context.addArgument(Vs::UniqueString::find("DragAndDrop"), path);
    Vu::CommandMgr::get()->executeLater(definition, context);
}

/// A connection from a program that has files to hand over. Deletes itself when it is finished.
class Connection : public QObject
{
public:
    Connection(Vs::Descriptor connection, const HandOverReceiver::Take& take, QObject* parent)
        : QObject(parent),
          m_connection(std::move(connection)),
          m_take(take),
          m_notifier(m_connection.get(), QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] { read(); });
        QTimer::singleShot(2 * kPatience, this, [this] { end(); });
    }

private:
    void end()
    {
        m_notifier.setEnabled(false);
        deleteLater();
    }

    void read()
    {
        char buffer[4096];
        const ssize_t got = recv(m_connection.get(), buffer, sizeof buffer, 0);
        if (got < 0 && (errno == EAGAIN || errno == EINTR))
            return;
        if (got <= 0 || m_received.size() + static_cast<size_t>(got) > kLargest) {
            end();
            return;
        }
        m_received.append(buffer, static_cast<size_t>(got));
        try {
            m_taken ? go() : take();
        } catch (const std::exception&) {
            end(); // A peer with another protocol gets no answer.
        }
    }

    void take()
    {
        const std::optional<HandedOver> files = readMessage(m_received);
        if (!files)
            return;
        m_files = *files;
        m_taken = true;
        m_received.clear();
        const std::string answer = kTaken;
        if (send(m_connection.get(), answer.data(), answer.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(answer.size()))
            end();
    }

    void go()
    {
        const std::string go = kGo;
        if (m_received.size() < go.size())
            return;
        const bool agreed = m_received == go;
        end();
        if (agreed)
            m_take(m_files);
    }

    Vs::Descriptor m_connection;
    const HandOverReceiver::Take& m_take;
    QSocketNotifier m_notifier;
    std::string m_received;
    HandedOver m_files;
    bool m_taken = false;
};

/// Records in the socket file's time when the program was last active.
class ActivationNote : public QObject
{
public:
    explicit ActivationNote(std::string path) : m_path(std::move(path))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == QCoreApplication::instance() && event->type() == QEvent::ApplicationStateChange)
            utimensat(AT_FDCWD, m_path.c_str(), nullptr, AT_SYMLINK_NOFOLLOW);
        return false;
    }

    std::string m_path;
};

} // namespace

struct HandOverReceiver::Data
{
    explicit Data(Take what) : take(std::move(what)) {}

    Take take;
    std::string path;
    Vs::Descriptor listening;
    std::unique_ptr<QSocketNotifier> notifier; ///< Also the parent of the connections.
    std::unique_ptr<ActivationNote> note;

    void accept() const
    {
        Vs::Descriptor connection(accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (connection && isOwn(connection))
            new Connection(std::move(connection), take, notifier.get());
    }
};

HandOverReceiver::HandOverReceiver(Take take) : m_data(std::make_unique<Data>(std::move(take)))
{
    const std::string where = folder(true);
    m_data->path = where + '/' + prefix() + std::to_string(getpid());
    if (!where.empty())
        m_data->listening = listenAt(m_data->path);
    if (!m_data->listening) {
        Vs::warn(L"Files cannot be handed over to this window: " +
                 Vs::Strings::fromBytes(where.empty() ? "no folder for its socket can be made"
                                                      : std::strerror(errno)) +
                 L'.');
        return;
    }
    m_data->notifier = std::make_unique<QSocketNotifier>(m_data->listening.get(), QSocketNotifier::Read);
    QObject::connect(m_data->notifier.get(), &QSocketNotifier::activated, m_data->notifier.get(),
                     [data = m_data.get()] { data->accept(); });
    m_data->note = std::make_unique<ActivationNote>(m_data->path);
}

HandOverReceiver::~HandOverReceiver()
{
    if (m_data->listening)
        unlink(m_data->path.c_str());
}

void HandOverReceiver::openInWindow(const HandedOver& files)
{
    for (const std::string& file : files.files) {
        if (Vu::ProgramLink::isLink(file)) {
            Vu::ProgramLink::follow(file);
            continue;
        }
        run(kHomeCommand); // Opening replaces the document shown; here there is none.
        run(kOpenCommand, Vs::Strings::fromBytes(file));
    }
    Vu::WorkspaceWindow* window = Vu::WorkspaceWindow::activeWorkspaceWindow();
    if (!window)
        return;
    if (!files.activationToken.empty())
        setenv(kTokenVariable, files.activationToken.c_str(), 1);
    window->activateWindow();
    unsetenv(kTokenVariable);
}

} // namespace Quillet
