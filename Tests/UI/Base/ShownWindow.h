#pragma once

#include <initializer_list>

namespace Vu {
class WorkspaceWindow;
}

namespace UiTests {

/// Shows the window of a new workspace, with an area for each of these contents, which name the areas as
/// well.
Vu::WorkspaceWindow* windowWith(std::initializer_list<const char*> contents);

} // namespace UiTests
