#pragma once

#include "Server/DataModel/Model/PartTree.h"

#include <TDF_Delta.hxx>

#include <unordered_map>

namespace Vs::Kernel {

/// Collects which labels of parts and of their occurrences a document's changes touch.
class TouchedLabels
{
public:
    void add(const Handle(TDF_Delta) & delta);
    /// A part or an occurrence. `content`: TouchedPlace::content.
    void add(const TDF_Label& label, bool content);
    std::vector<TouchedPlace> take();
    void clear() { m_places.clear(); }

private:
    void add(const TDF_Label& label, const Standard_GUID& attribute);

    std::unordered_map<std::string, bool> m_places; ///< Whether their content is touched.
};

} // namespace Vs::Kernel
