#pragma once

#include <TDocStd_Document.hxx>

#include <iosfwd>
#include <string_view>

namespace Vs::Kernel {

// XDE documents and the bytes in which models keep them. Any thread; errors are std::runtime_error, and
// Standard_Failure as the kernel throws it.

Handle(TDocStd_Document) newXdeDocument();
Handle(TDocStd_Document) readXdeDocument(std::string_view bytes);
/// As it is: see XdeTransaction::withoutRemoved. Also in a forked child.
void writeXdeDocument(const Handle(TDocStd_Document) & document, std::ostream& stream);
/// Of one that isn't null; it isn't used any more.
void closeXdeDocument(const Handle(TDocStd_Document) & document);

} // namespace Vs::Kernel
