#include "Server/Base/Require.h"

#include <cstdio>
#include <cstdlib>
#include <pthread.h>

namespace Vs::Detail {
namespace {
const pthread_t mainThread = pthread_self();
}

void promiseBroken(const char* promise, const std::source_location& where)
{
    std::fprintf(stderr, "%s:%u: broken promise in %s: %s\n", where.file_name(), where.line(),
                 where.function_name(), promise);
    std::abort();
}

bool onMainThread()
{
    // No thread can have been started before this library was initialised.
    return mainThread == pthread_t{} || pthread_equal(mainThread, pthread_self());
}

} // namespace Vs::Detail
