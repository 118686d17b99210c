#include "UI/Base/Program/Presence.h"

#include "UI/Base/Program/Application.h"

namespace Vu {

bool somebodyIsThere()
{
    return Application::get()->mainWidget() && !Application::headless() && !Application::testing();
}

} // namespace Vu
