#include "Server/DataModel/Kernel/XdeEdit.h"

#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDataStd_UAttribute.hxx>

#include <stdexcept>

namespace Vs::Kernel {

TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component)
{
    const TDF_Label label = labelOf(document, component.substr(component.rfind('/') + 1));
    if (label.IsNull() || bodyShape(label).IsNull())
        throw std::runtime_error("the component isn't in the model any more");
    return label;
}

void renameOccurrence(const TDF_Label& label, const std::wstring& name)
{
    setName(label, name);
    if (isMadeUp(name))
        TDataStd_UAttribute::Set(label, namedByUser());
}

} // namespace Vs::Kernel
