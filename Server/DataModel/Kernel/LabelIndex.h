#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <string>

namespace Vs::Kernel {

/// The label at an entry such as 0:1:1:5 of a document; null if there is none. The cost doesn't depend on how
/// many siblings it has: the kernel's own lookup walks along all of them, unless it keeps a table with a text
/// for each. One thread at a time per document.
[[nodiscard]] TDF_Label labelOf(const Handle(TDocStd_Document) & document, const std::string& entry);

/// To be called before a document is destroyed in which labels were looked up.
void forgetLabels(const Handle(TDocStd_Document) & document);

} // namespace Vs::Kernel
