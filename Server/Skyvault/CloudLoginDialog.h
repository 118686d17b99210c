#pragma once

#include <functional>
#include <string>

namespace Vs {

/// Asks the user to sign in to the cloud drive. The UI installs the dialog; without one, nobody can be asked.
/// Main thread only.
class CloudLoginDialog
{
public:
    enum ELoginMode {
        LogIn,     ///< Only if nobody is signed in.
        SwitchUser ///< Even if somebody is.
    };

    /// Shows the dialog until somebody has signed in (MeshportAuth::signIn) or given up; true if signed in.
    using Asker = std::function<bool(ELoginMode)>;
    static void asker(Asker asker);
    [[nodiscard]] static bool canAsk();
    [[nodiscard]] static bool ask(ELoginMode mode);
};

} // namespace Vs
