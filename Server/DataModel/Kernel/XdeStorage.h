#pragma once

#include <TDocStd_Document.hxx>

#include <iosfwd>
#include <string_view>

namespace Vs::Kernel {

// XDE documents, and the bytes that models keep them in. Any thread; errors are std::runtime_error, and
// Standard_Failure as the kernel throws it.

Handle(TDocStd_Document) newXdeDocument();
Handle(TDocStd_Document) readXdeDocument(std::string_view bytes);
/// As it is now: see XdeTransaction::withoutRemoved. Also in a forked child.
void writeXdeDocument(const Handle(TDocStd_Document) & document, std::ostream& stream);
/// Takes one that isn't null, which must not be used afterwards.
void closeXdeDocument(const Handle(TDocStd_Document) & document);

} // namespace Vs::Kernel
