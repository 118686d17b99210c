#include "Server/Scene/GraphicsOptionGroup.h"

namespace Vs::Scene {

namespace {

constexpr const char* kObjectShadowType = "objectShadowType";
constexpr int kNotChosen = -1;

} // namespace

GraphicsOptionGroup* GraphicsOptionGroup::get()
{
    static GraphicsOptionGroup group;
    return &group;
}

bool GraphicsOptionGroup::objectShadowIsChosen() const
{
    return value(kObjectShadowType, kNotChosen) != kNotChosen;
}

void GraphicsOptionGroup::chooseObjectShadow(int type)
{
    setValue(kObjectShadowType, type);
}

} // namespace Vs::Scene
