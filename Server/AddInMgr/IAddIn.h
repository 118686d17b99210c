#pragma once

#include "Server/Base/Object.h"

#include <string>

namespace Vs {

/// A library that the application loads through a manifest. The library owns the object that its export
/// GetIAddIn returns.
class IAddIn : public Implements<IAddIn>
{
public:
    /// The add-in's name for users.
    virtual std::wstring toString() = 0;
    /// Starts the add-in. An exception means that it could not start; it is then not unloaded.
    virtual void load() = 0;
    /// Ends the add-in, in two steps, after all that were loaded later: first `false` for every add-in
    /// (release events; other add-ins still exist), then `true` for every one (release objects).
    virtual void unload(bool last) = 0;
};

/// The type and name of an add-in's only export.
using GetIAddInFunction = IAddIn* (*)();
constexpr const char* kGetIAddIn = "GetIAddIn";

} // namespace Vs
