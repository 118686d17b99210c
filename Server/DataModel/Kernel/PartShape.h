#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <functional>
#include <vector>

namespace Vs::Kernel {

/// What a face, or another part, of a shape became; nothing if it is gone.
using Successors = std::function<std::vector<TopoDS_Shape>(const TopoDS_Shape&)>;

/// Gives a part another shape. Names and colours of its faces and other sub-shapes move to their successors.
/// The shapes are without the part's own location.
void replaceShape(const Handle(TDocStd_Document) & document, const TDF_Label& part, const TopoDS_Shape& shape,
                  const Successors& successors);

/// A separate part, on a new label, that has another shape and is otherwise like that one.
TDF_Label clonePart(const Handle(TDocStd_Document) & document, const TDF_Label& part,
                    const TopoDS_Shape& shape, const Successors& successors);

/// The same shape as a new object: so it counts as changed, while its faces don't.
TopoDS_Shape renewed(const TopoDS_Shape& shape);

} // namespace Vs::Kernel
