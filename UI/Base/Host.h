#pragma once

namespace Vu {

/// Composes the program: tells the command model of sessions, shells and workspaces, the application of its
/// windows, the windows of their canvases, and documents how they are saved. Whoever runs a program or a test
/// with sessions or windows calls it before Application::initialize; again does nothing. Main thread only.
void installHost();

} // namespace Vu
