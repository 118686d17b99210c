#pragma once

namespace Vu {

/// The home screen of the active workspace, shown when nothing is open. Main thread only; nothing happens
/// without a workspace.
class WelcomeScreen
{
public:
    static WelcomeScreen* get();

    /// Whether it is what the workspace shows.
    [[nodiscard]] static bool dialogExists();
    /// Brings it to the top.
    void show();
    /// Uncovers the documents beneath it. As long as none is open it stays, since there is nothing beneath
    /// it: the next document replaces it.
    void close();

private:
    WelcomeScreen() = default;
};

} // namespace Vu
