#include "Server/Base/OS.h"

#include "Server/Base/ChildProcess.h"
#include "Server/Base/Strings.h"

#include <QUrl>

#include <optional>
#include <sys/wait.h>
#include <thread>
#include <utility>
#include <vector>

namespace Vs::OS {

namespace {

std::string& program()
{
    static std::string name = "xdg-open";
    return name;
}

constexpr const char* kUsualMailProgram = "xdg-email";

std::string& mailProgram()
{
    static std::string name = kUsualMailProgram;
    return name;
}

/// Some mail programs pass over the attachment of an address, which is all that xdg-email gives them, and
/// take it as an argument. $1 is the address with the subject, $2 the file, and the others are for xdg-email.
constexpr const char* kMailScript = R"(
handler=$(xdg-mime query default x-scheme-handler/mailto 2>/dev/null)
case $handler in
    sylpheed.desktop) exec sylpheed --compose "$1" --attach "$2" ;;
esac
shift 2
exec xdg-email "$@"
)";

/// Starts a program, which is looked for in PATH.
bool start(std::string name, std::vector<std::string> words, std::function<void()> failed)
{
    ChildProcess child;
    if (child.start({.program = std::move(name), .arguments = std::move(words), .leadsGroup = false}) != 0)
        return false;
    // Somebody must collect the child's exit code, or it stays a zombie for as long as the program runs.
    std::thread([child = std::move(child), failed = std::move(failed)]() mutable {
        const std::optional<int> state = child.collect();
        if (failed && state && !(WIFEXITED(*state) && WEXITSTATUS(*state) == 0))
            failed();
    }).detach();
    return true;
}

} // namespace

bool platformShellOpen(const std::wstring& target, std::function<void()> failed)
{
    std::string argument = Strings::toBytes(target);
    if (argument.empty() || argument.front() == '-')
        return false;
    return start(program(), {std::move(argument)}, std::move(failed));
}

bool platformEmail(const std::wstring& subject, const std::wstring& attachment, std::function<void()> failed)
{
    std::string file = Strings::toBytes(attachment);
    if (file.empty() || file.front() != '/')
        return false;
    const std::string title = Strings::toBytes(subject);
    std::vector<std::string> words = {"--utf8", "--subject", title, "--attach", file};
    if (mailProgram() != kUsualMailProgram)
        return start(mailProgram(), std::move(words), std::move(failed));
    const QByteArray encoded = QUrl::toPercentEncoding(QString::fromStdWString(subject));
    words.insert(words.begin(), {"-c", kMailScript, "sh", "mailto:?subject=" + encoded.toStdString(), file});
    return start("/bin/sh", std::move(words), std::move(failed));
}

void emailProgram(const std::string& name)
{
    mailProgram() = name;
}

void shellOpenProgram(const std::string& name)
{
    program() = name;
}

} // namespace Vs::OS
