#pragma once

#include "Server/Base/Object.h"

#include <string>

namespace Vs {

/// A library that the application loads through a manifest. The library owns the object that its export
/// GetIAddIn hands out.
class IAddIn : public Implements<IAddIn>
{
public:
    /// What people read: the add-in's name.
    virtual std::wstring toString() = 0;
    /// Starts the add-in. An exception means that it could not start; it gets no unload then.
    virtual void load() = 0;
    /// Ends the add-in, in two steps, after all that were loaded later: first `false` for every add-in (let
    /// go of events, other add-ins are still there), then `true` for every one (let go of objects).
    virtual void unload(bool last) = 0;
};

/// The type and name of an add-in's one export.
using GetIAddInFunction = IAddIn* (*)();
constexpr const char* kGetIAddIn = "GetIAddIn";

} // namespace Vs
