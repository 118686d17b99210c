#include "Server/DataModel/FileChecks.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Native/FileCheck.h"

namespace Vs::FileChecks {

Tasks& results()
{
    static auto* const tasks = new Tasks;
    return *tasks;
}

void wait()
{
    assertMainThread();
    Native::FileCheck::waitForAll();
}

} // namespace Vs::FileChecks
