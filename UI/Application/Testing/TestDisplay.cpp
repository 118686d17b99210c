#include "UI/Application/Testing/TestDisplay.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace Quillet {
namespace {

constexpr int kLongestStart = 60000; // milliseconds
constexpr const char* kScreen = "1366x768x24";

bool isSet(const char* name)
{
    const char* value = std::getenv(name);
    return value && *value;
}

} // namespace

TestDisplay::TestDisplay()
{
    if (isSet("DISPLAY") || isSet("WAYLAND_DISPLAY"))
        return;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("A pipe cannot be made.");
    // It picks a free number, and reports it once it is ready.
    const int error = m_server.start(
        {.program = "Xvfb",
         .arguments = {"-displayfd", "3", "-noreset", "-nolisten", "tcp", "-screen", "0", kScreen},
         .name = {},
         .folder = {},
         .descriptors = {{ends[1], 3}},
         .isSilent = true});
    close(ends[1]);
    std::string number;
    pollfd waiting = {ends[0], POLLIN, 0};
    for (char digit = 0; error == 0 && poll(&waiting, 1, kLongestStart) > 0 &&
                         read(ends[0], &digit, 1) == 1 && digit != '\n';)
        number += digit;
    close(ends[0]);
    if (number.empty())
        throw std::runtime_error(
            "--window needs a display (DISPLAY or WAYLAND_DISPLAY), or Xvfb to make one.");
    setenv("DISPLAY", (':' + number).c_str(), 1);
}

} // namespace Quillet
