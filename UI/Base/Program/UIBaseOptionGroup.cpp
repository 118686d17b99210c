#include "UI/Base/Program/UIBaseOptionGroup.h"

namespace Vu {

UIBaseOptionGroup* UIBaseOptionGroup::get()
{
    static auto* const group = new UIBaseOptionGroup;
    return group;
}

void UIBaseOptionGroup::debugDialogPos(const Vs::Point2& corner)
{
    m_debugDialogX(corner.x);
    m_debugDialogY(corner.y);
}

} // namespace Vu
