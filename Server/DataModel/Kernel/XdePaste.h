#pragma once

#include <TDocStd_Document.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

/// Puts copies of components of one document at the top of another's tree, or of the same, and returns their
/// ids (Component::id). Throws std::runtime_error if a component is gone.
std::vector<std::string> pasteOccurrences(const Handle(TDocStd_Document) & target,
                                          const Handle(TDocStd_Document) & source,
                                          const std::vector<std::string>& components);

} // namespace Vs::Kernel
