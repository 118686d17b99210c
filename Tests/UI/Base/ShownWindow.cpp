#include "Tests/UI/Base/ShownWindow.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <memory>

namespace UiTests {

Vu::WorkspaceWindow* windowWith(std::initializer_list<const char*> contents)
{
    Vu::WorkspaceWindow* window = Vu::WorkspaceMgr::get()->create()->window();
    auto* layout = new Vu::Layout;
    for (const char* key : contents)
        layout->addChild(
            std::make_unique<Vu::Area>(Vs::Strings::widen(key), Vs::UniqueString::find(key, true)));
    Vu::ArrangementMgr* arrangements = window->arrangementManager();
    arrangements->arrangement(Vu::Arrangement::make(arrangements, layout));
    window->show();
    return window;
}

} // namespace UiTests
