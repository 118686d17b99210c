#include "Tests/Support/Users.h"

#include <exception>
#include <grp.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace TestSupport {

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

} // namespace TestSupport
