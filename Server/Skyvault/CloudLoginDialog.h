#pragma once

#include <functional>
#include <string>

namespace Vs {

/// Asks a person to sign in to the cloud drive. The window's side installs what asks; without one, nobody can
/// be asked. Main thread only.
class CloudLoginDialog
{
public:
    enum ELoginMode {
        LogIn,     ///< Only if nobody is signed in.
        SwitchUser ///< Also if somebody is.
    };

    /// Shows the dialog until somebody has signed in (MeshportAuth::signIn) or given up; true if somebody
    /// has.
    using Asker = std::function<bool(ELoginMode)>;
    static void asker(Asker asker);
    [[nodiscard]] static bool canAsk();
    [[nodiscard]] static bool ask(ELoginMode mode);
};

} // namespace Vs
