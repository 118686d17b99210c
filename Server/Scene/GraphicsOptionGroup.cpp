#include "Server/Scene/GraphicsOptionGroup.h"

namespace Vs::Scene {

GraphicsOptionGroup* GraphicsOptionGroup::get()
{
    static GraphicsOptionGroup group;
    return &group;
}

} // namespace Vs::Scene
