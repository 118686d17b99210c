#include "Tests/Support/Users.h"

#include <boost/filesystem/operations.hpp>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <grp.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace TestSupport {

namespace {

void setVariable(const std::string& name, const std::optional<std::string>& value)
{
    if (value)
        setenv(name.c_str(), value->c_str(), 1);
    else
        unsetenv(name.c_str());
}

} // namespace

bool asUser(unsigned user, const std::function<bool()>& function)
{
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot fork");
    if (child == 0) {
        bool answer = false;
        try {
            answer = setgroups(0, nullptr) == 0 && setresgid(user, user, user) == 0 &&
                     setresuid(user, user, user) == 0 && function();
        } catch (const std::exception&) {
            answer = false;
        }
        _exit(answer ? 0 : 1);
    }
    int state = 0;
    waitpid(child, &state, 0);
    return WIFEXITED(state) && WEXITSTATUS(state) == 0;
}

bool mayBeOthers()
{
    return geteuid() == 0;
}

OpenFolder::OpenFolder()
{
    // The temporary folder of a run of tests is closed to others.
    std::string made = std::string(P_tmpdir) + "/quillet-open-XXXXXX";
    if (!mkdtemp(made.data()) || chmod(made.c_str(), 0755) != 0)
        throw std::runtime_error("cannot make a folder in " P_tmpdir);
    m_path = made;
}

OpenFolder::~OpenFolder()
{
    boost::system::error_code ignored;
    boost::filesystem::remove_all(m_path, ignored);
}

Variable::Variable(std::string name, const std::optional<std::string>& value) : m_name(std::move(name))
{
    if (const char* before = std::getenv(m_name.c_str()))
        m_before = before;
    setVariable(m_name, value);
}

Variable::~Variable()
{
    setVariable(m_name, m_before);
}

} // namespace TestSupport
