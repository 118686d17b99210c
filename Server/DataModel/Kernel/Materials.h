#pragma once

#include "Server/Body/Finish.h"

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

namespace Vs::Kernel {

/// What the material on a label says beyond its colour. Only physically based materials count; of others,
/// files hold any defaults. What is out of its range is brought into it.
Finish finishOf(const TDF_Label& label);

/// Takes all materials off their labels; the colours stay.
void forgetMaterials(const Handle(TDocStd_Document) & document);

/// 0 for what isn't a number.
float toShare(double value);

} // namespace Vs::Kernel
