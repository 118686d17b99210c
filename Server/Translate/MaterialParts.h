#pragma once

#include <TDocStd_Document.hxx>

namespace Vs::Translate {

/// Makes each material a part's own: the kernel's reader puts it on an occurrence where several materials
/// have the same triangles. An occurrence in another material than its part's shows a part of its own then,
/// which all in that material share.
void separateMaterials(const Handle(TDocStd_Document) & document);

} // namespace Vs::Translate
