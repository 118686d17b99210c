#include "Server/DataModel/KernelVersion.h"

namespace Vs {

std::string kernelVersion()
{
    return QUILLET_KERNEL_VERSION;
}

} // namespace Vs
