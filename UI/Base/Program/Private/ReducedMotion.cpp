#include "UI/Base/Program/Private/ReducedMotion.h"

#include "UI/Base/Program/UIBaseOptionGroup.h"

namespace Vu {
namespace {
bool desktopWantsLess = false;
} // namespace

bool motionIsReduced()
{
    return desktopWantsLess || !UIBaseOptionGroup::get()->animateCamera();
}

void desktopReducesMotion(bool value)
{
    desktopWantsLess = value;
}

} // namespace Vu
