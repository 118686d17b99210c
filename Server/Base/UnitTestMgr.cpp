#include "Server/Base/UnitTestMgr.h"

namespace Vs {

UnitTestMgr* UnitTestMgr::get()
{
    static UnitTestMgr manager;
    return &manager;
}

} // namespace Vs
