#pragma once

#include "Server/DataModel/Kernel/LabelMap.h"
#include "Server/DataModel/Model/PartTree.h"

#include <TDF_Delta.hxx>
#include <TDF_Label.hxx>

#include <vector>

namespace Vs::Kernel {

/// Collects the labels of parts and occurrences that changes of a document touch.
class TouchedLabels
{
public:
    void add(const Handle(TDF_Delta) & delta);
    /// A part or an occurrence. `content`: TouchedPlace::content.
    void add(const TDF_Label& label, bool content);
    std::vector<TouchedPlace> take();
    void clear() { m_places.Clear(); }

private:
    void add(const TDF_Label& label, const Standard_GUID& attribute);

    LabelMap<bool> m_places; ///< Whether their content is touched.
    TDF_Label m_shapes;      ///< The section of the parts.
};

} // namespace Vs::Kernel
