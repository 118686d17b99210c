#pragma once

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"

#include <exception>

namespace Vu {

/// Runs what others wrote; what it throws becomes an error. Returns whether it came back as it should.
/// Private to the command model.
template <class Action>
bool guarded(Vs::Status& status, Action&& action)
{
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        status.addError(Vs::Strings::widen(error.what()));
    } catch (...) {
        status.addError(L"The command failed with an unknown exception.");
    }
    return false;
}

} // namespace Vu
