#pragma once

#include <Standard_Handle.hxx>
#include <Standard_Transient.hxx>

namespace Vs::Translate {

/// Whether a STEP entity has a number that nobody can have meant: a position beyond a million kilometres, a
/// direction of length zero, a radius that isn't positive, decreasing knots. The kernel accepts them as they
/// are.
[[nodiscard]] bool hasAbsurdNumber(const Handle(Standard_Transient) & entity);

} // namespace Vs::Translate
