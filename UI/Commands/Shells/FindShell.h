#pragma once

#include "UI/Base/Workspace/ShellMgr.h"

namespace Vu::Commands {

/// The manager's shell of class T; null if it has none or there is no manager.
template <class T>
T* findShell(ShellMgr* manager)
{
    if (manager)
        for (Shell* shell : manager->shells())
            if (T* found = Vs::cast<T>(shell))
                return found;
    return nullptr;
}

/// The same, created and added if there is none. Null only without a manager.
template <class T>
T* findOrMakeShell(ShellMgr* manager)
{
    if (!manager)
        return nullptr;
    if (T* found = findShell<T>(manager))
        return found;
    T* made = T::make(manager);
    manager->add(made);
    return made;
}

} // namespace Vu::Commands
