#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <string>

namespace Vs::Kernel {

/// The label at an entry such as 0:1:1:5 of a document; null if there is none. It costs the same however many
/// stand beside it: the kernel's own way to a label leads along all of these, unless it keeps a table with a
/// text for each. Of one document, one thread at a time may ask.
[[nodiscard]] TDF_Label labelOf(const Handle(TDocStd_Document) & document, const std::string& entry);

/// To be called before a document goes in which labels were looked for.
void forgetLabels(const Handle(TDocStd_Document) & document);

} // namespace Vs::Kernel
