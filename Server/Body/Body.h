#pragma once

#include "Server/Base/Object.h"
#include "Server/Body/BodyMesh.h"

#include <memory>
#include <string>

namespace Vs {

/// One unique shape of an asset. The kernel's own shape stays behind ShapeAccess; what draws and lists bodies
/// needs only this.
class Body : public Implements<Body, SharedObject>
{
public:
    virtual const std::wstring& name() const = 0;
    virtual Colour colour() const = 0;
    /// The mesh, or null as long as it is still being made.
    virtual std::shared_ptr<const BodyMesh> mesh() const = 0;
};

} // namespace Vs
