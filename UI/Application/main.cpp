#include "UI/Application/RunCommandLine.h"

#include <cerrno>
#include <fcntl.h>

namespace {

/// If the run was started with a standard stream closed, the next opened file would get its descriptor, and
/// the stream's messages.
void openStandardStreams()
{
    for (int stream = 0; stream <= 2; ++stream)
        if (fcntl(stream, F_GETFD) < 0 && errno == EBADF)
            open("/dev/null", O_RDWR);
}

} // namespace

int main(int count, char** arguments)
{
    openStandardStreams();
    return Quillet::runCommandLine(count, arguments);
}
