#include "Server/DataModel/Kernel/XdePaste.h"

#include "Server/DataModel/Kernel/EditPlaces.h"
#include "Server/DataModel/Kernel/Occurrence.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_LabelMap.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <map>
#include <stdexcept>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

TDF_LabelSequence freeShapes(const Document& document)
{
    TDF_LabelSequence shapes;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(shapes);
    return shapes;
}

/// Takes the parts and assemblies of another document over, each once.
class Extraction
{
public:
    explicit Extraction(const Document& target) : m_target(target) {}

    TDF_Label extracted(const TDF_Label& shown)
    {
        TDF_Label& known = m_known[entryOf(shown)];
        if (known.IsNull())
            known = extract(shown);
        return known;
    }

private:
    TDF_Label extract(const TDF_Label& shown) const
    {
        TDF_LabelMap before;
        for (const TDF_Label& label : freeShapes(m_target))
            before.Add(label);
        if (XCAFDoc_Editor::Extract(shown, XCAFDoc_DocumentTool::ShapesLabel(m_target->Main())))
            for (const TDF_Label& label : freeShapes(m_target))
                if (!before.Contains(label))
                    return label;
        throw std::runtime_error("a component can't be taken over");
    }

    const Document& m_target;
    std::map<std::string, TDF_Label> m_known;
};

/// An occurrence at the top of the target, with the name and the look of that one.
TDF_Label addOccurrence(const Document& target, const Occurrence& original, const TDF_Label& shown)
{
    const TDF_Label added = newRootLabel(target);
    makeReference(added, shown,
                  TopLoc_Location(original.parentPlace()) * XCAFDoc_ShapeTool::GetLocation(original.label()));
    XCAFDoc_Editor::CloneMetaData(original.label(), added, nullptr);
    renameOccurrence(added, nameOf(original.label()));
    return added;
}

std::string pasteFromOther(const Document& target, const Occurrence& original, Extraction& extraction)
{
    const TDF_Label shown = extraction.extracted(original.shown());
    return entryOf(original.isRootAssembly() ? shown : addOccurrence(target, original, shown));
}

std::string pasteFromSame(const Document& document, const Occurrence& original)
{
    if (original.isRootAssembly())
        return apply(document, CopyEdit{{original.id()}, {GkMatrix3d()}}).front();
    detachPart(document, original.label());
    return entryOf(addOccurrence(document, original, original.shown()));
}

} // namespace

std::vector<std::string> pasteOccurrences(const Document& target, const Document& source,
                                          const std::vector<std::string>& components)
{
    std::vector<std::string> added;
    Extraction extraction(target);
    for (const Occurrence& original : topmostOccurrences(source, components))
        added.push_back(target == source ? pasteFromSame(target, original)
                                         : pasteFromOther(target, original, extraction));
    XCAFDoc_DocumentTool::ShapeTool(target->Main())->UpdateAssemblies();
    return added;
}

} // namespace Vs::Kernel
