#pragma once

#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <functional>

namespace Vs::Translate::Shares {

// At the end of a transfer, the kernel compares the faces at each edge of all shapes, and notes with the edge
// how smoothly they meet. It does so on one thread, and again for edges that aren't smooth.

/// Notes it for the edges of one shape.
void markSmoothEdges(const TopoDS_Shape& shape);

/// While it exists, the kernel doesn't: the edges have been marked.
class WithoutSmoothEdges
{
public:
    WithoutSmoothEdges();
    ~WithoutSmoothEdges();
    WithoutSmoothEdges(const WithoutSmoothEdges&) = delete;
    WithoutSmoothEdges& operator=(const WithoutSmoothEdges&) = delete;
};

/// Notes it for the simple shapes of a document, except those of which `isMarked` is true.
void markSmoothEdges(const Handle(TDocStd_Document) & document,
                     const std::function<bool(const TopoDS_Shape&)>& isMarked);

} // namespace Vs::Translate::Shares
