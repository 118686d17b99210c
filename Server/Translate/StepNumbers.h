#pragma once

#include <Standard_Handle.hxx>
#include <Standard_Transient.hxx>

namespace Vs::Translate {

/// Whether a STEP entity has a number that nobody can have meant: a place beyond a million kilometres, a
/// direction that leads nowhere, a radius that isn't positive, knots that fall. The kernel takes them as they
/// are.
[[nodiscard]] bool hasAbsurdNumber(const Handle(Standard_Transient) & entity);

} // namespace Vs::Translate
