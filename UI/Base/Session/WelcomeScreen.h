#pragma once

namespace Vu {

/// The home screen of the active workspace, which greets whoever has nothing open. Main thread only; nothing
/// happens without a workspace.
class WelcomeScreen
{
public:
    static WelcomeScreen* get();

    /// Whether it is what the workspace shows.
    [[nodiscard]] static bool dialogExists();
    /// Brings it to the top.
    void show();
    /// Takes it off the documents that it covers. As long as none is open it stays, since there is nothing
    /// below it: the next document takes its place.
    void close();

private:
    WelcomeScreen() = default;
};

} // namespace Vu
