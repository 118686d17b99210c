#include "Server/DataModel/Kernel/EditPlaces.h"

#include "Server/DataModel/Kernel/LabelState.h"
#include "Server/DataModel/Kernel/MirrorShape.h"
#include "Server/DataModel/Kernel/Occurrence.h"
#include "Server/DataModel/Kernel/PartShape.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_LabelDataMap.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_TagSource.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_Location.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax2.hxx>

#include <algorithm>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

TDF_LabelSequence componentsOf(const TDF_Label& assembly)
{
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(assembly, components);
    return components;
}

void copyLook(const TDF_Label& from, const TDF_Label& to)
{
    XCAFDoc_Editor::CloneMetaData(from, to, nullptr);
    renameOccurrence(to, nameOf(from));
}

TDF_Label newOccurrenceLabel(const Document& document, const TDF_Label& assembly)
{
    return assembly.IsNull() ? newRootLabel(document) : TDF_TagSource::NewChild(assembly);
}

/// Puts links of the kinds that a state has in front of all others, as copies have them.
void linkInFront(LabelState& state)
{
    const auto renew = [](LabelLink& link, const Standard_GUID& kind) {
        if (!link.to.IsNull())
            link = Kernel::linkInFront(link.to, kind);
    };
    renew(state.shown, XCAFDoc::ShapeRefGUID());
    renew(state.surfaceColour, XCAFDoc::ColorRefGUID(XCAFDoc_ColorSurf));
    renew(state.colour, XCAFDoc::ColorRefGUID(XCAFDoc_ColorGen));
}

TDF_Label addOccurrence(const Document& document, const TDF_Label& assembly, const TDF_Label& original,
                        const TDF_Label& shown, const TopLoc_Location& place)
{
    TDF_Label added;
    if (assembly.IsNull()) {
        added = newRootLabel(document);
        makeReference(added, shown, place);
    } else {
        added = XCAFDoc_DocumentTool::ShapeTool(document->Main())->AddComponent(assembly, shown, place);
    }
    copyLook(original, added);
    return added;
}

// What stands at the top by itself has no place; its parts have. So the copy is an assembly of the same
// parts, and the ids of all that is inside the original stay.
TDF_Label copyRootAssembly(const Document& document, const TDF_Label& assembly, const gp_Trsf& motion)
{
    const TDF_Label added = XCAFDoc_DocumentTool::ShapeTool(document->Main())->NewShape();
    for (const TDF_Label& component : componentsOf(assembly)) {
        TDF_Label shown;
        XCAFDoc_ShapeTool::GetReferredShape(component, shown);
        addOccurrence(document, added, component, shown,
                      TopLoc_Location(motion) * XCAFDoc_ShapeTool::GetLocation(component));
    }
    copyLook(assembly, added);
    return added;
}

/// Whether the part or assembly shows that one, at any depth.
bool shows(const TDF_Label& shown, const TDF_Label& other)
{
    if (shown == other)
        return true;
    const TDF_LabelSequence components = componentsOf(shown);
    return std::any_of(components.begin(), components.end(), [&](const TDF_Label& component) {
        TDF_Label below;
        return XCAFDoc_ShapeTool::GetReferredShape(component, below) && shows(below, other);
    });
}

/// The id of a component that was put beside another one.
std::string idBeside(const std::string& id, const TDF_Label& added)
{
    const size_t slash = id.rfind('/');
    return (slash == std::string::npos ? "" : id.substr(0, slash + 1)) + entryOf(added);
}

/// Makes mirror images of parts and assemblies. What is mirrored is a shape in its own coordinates, at their
/// plane of Y and Z, so that all occurrences of a part share one image.
class Mirror
{
public:
    explicit Mirror(const Document& document) : m_document(document)
    {
        m_own.SetMirror(gp_Ax2(gp::Origin(), gp::DX()));
    }

    TDF_Label imageOf(const TDF_Label& shown)
    {
        if (!m_images.IsBound(shown)) {
            const TDF_Label image =
                XCAFDoc_ShapeTool::IsAssembly(shown) ? imageOfAssembly(shown) : imageOfPart(shown);
            m_images.Bind(shown, image);
        }
        return m_images(shown);
    }

    /// Where the mirror image of what stands at a place stands, after a mirroring motion.
    gp_Trsf placeOf(const gp_Trsf& motion, const gp_Trsf& place) const { return motion * place * m_own; }

private:
    TDF_Label imageOfPart(const TDF_Label& part)
    {
        const MadeShape image = mirrored(bodyShape(part), m_own, nameOf(part));
        return clonePart(m_document, part, image.shape, image.successors);
    }

    TDF_Label imageOfAssembly(const TDF_Label& assembly)
    {
        const TDF_Label image = XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->NewShape();
        for (const TDF_Label& component : componentsOf(assembly)) {
            TDF_Label shown;
            XCAFDoc_ShapeTool::GetReferredShape(component, shown);
            gp_Trsf place = XCAFDoc_ShapeTool::GetLocation(component).Transformation();
            if (!XCAFDoc_ShapeTool::IsAssembly(shown))
                place.Multiply(XCAFDoc_ShapeTool::GetShape(shown).Location().Transformation());
            addOccurrence(m_document, image, component, imageOf(shown),
                          TopLoc_Location(placeOf(m_own, place)));
        }
        copyLook(assembly, image);
        return image;
    }

    Document m_document;
    gp_Trsf m_own;
    TDF_LabelDataMap m_images;
};

} // namespace

std::vector<std::string> apply(const Document& document, const MirrorEdit& edit)
{
    gp_Trsf motion;
    motion.SetMirror(gp_Ax2(gp_Pnt(edit.point.x, edit.point.y, edit.point.z),
                            gp_Dir(edit.normal.x, edit.normal.y, edit.normal.z)));
    Mirror mirror(document);
    std::vector<std::string> added;
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        const gp_Trsf parent = occurrence.parentPlace();
        const TopLoc_Location place(parent.Inverted() * mirror.placeOf(motion, occurrence.place()));
        added.push_back(
            idBeside(occurrence.id(), addOccurrence(document, occurrence.parent(), occurrence.label(),
                                                    mirror.imageOf(occurrence.shown()), place)));
    }
    if (!edit.keep)
        removeOccurrences(document, edit.components);
    return added;
}

std::vector<std::string> nest(const Document& document, const std::vector<std::string>& components,
                              const Occurrence& assembly)
{
    const gp_Trsf toAssembly = assembly.place().Inverted();
    std::vector<std::string> added;
    for (const Occurrence& occurrence : topmostOccurrences(document, components)) {
        const TDF_Label shown = occurrence.shown();
        if (shows(shown, assembly.shown()))
            throw EditError(EditFault::OwnParent, nameOf(occurrence.label()));
        const TopLoc_Location place(toAssembly * occurrence.parentPlace() *
                                    XCAFDoc_ShapeTool::GetLocation(occurrence.label()).Transformation());
        const bool isReference = shown != occurrence.label();
        const TDF_Label inside =
            XCAFDoc_DocumentTool::ShapeTool(document->Main())->AddComponent(assembly.shown(), shown, place);
        // What stands for itself at the top keeps its look, and is shown with it.
        if (isReference)
            copyLook(occurrence.label(), inside);
        else
            renameOccurrence(inside, nameOf(occurrence.label()));
        added.push_back(assembly.id() + '/' + entryOf(inside));
        if (isReference)
            removeOccurrence(occurrence.label());
    }
    return added;
}

std::optional<std::vector<TDF_Label>> movedAlone(const Document& document, const MoveEdit& edit)
{
    std::vector<TDF_Label> labels;
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        if (occurrence.isRootAssembly()) {
            const TDF_LabelSequence components = componentsOf(occurrence.label());
            labels.insert(labels.end(), components.begin(), components.end());
        } else if (XCAFDoc_ShapeTool::IsReference(occurrence.label())) {
            labels.push_back(occurrence.label());
        } else {
            return std::nullopt;
        }
    }
    return labels;
}

std::vector<std::string> apply(const Document& document, const MoveEdit& edit)
{
    // Setting the location again would be a change that can be undone.
    if (edit.motion.isEqualTo({}, {0, 0}))
        return {};
    const gp_Trsf motion = toMotion(edit.motion);
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        if (occurrence.isRootAssembly()) {
            for (const TDF_Label& component : componentsOf(occurrence.label()))
                XCAFDoc_Location::Set(component,
                                      TopLoc_Location(motion) * XCAFDoc_ShapeTool::GetLocation(component));
            continue;
        }
        detachPart(document, occurrence.label());
        XCAFDoc_Location::Set(occurrence.label(), occurrence.moved(motion));
    }
    return {};
}

namespace {

/// Copies of an occurrence that needs nothing but a LabelState; `note` is called for each label before it
/// has one.
void copyPlain(const Document& document, const Occurrence& occurrence, const CopyEdit& edit,
               const std::function<void(const TDF_Label&)>& note, std::vector<std::string>& added)
{
    LabelState state = LabelState::of(occurrence.label());
    state.namedByUser = isMadeUp(nameOf(occurrence.label()));
    for (const GkMatrix3d& each : edit.motions) {
        const TDF_Label copy = newOccurrenceLabel(document, occurrence.parent());
        note(copy);
        state.place = occurrence.moved(toMotion(each));
        linkInFront(state);
        state.putOn(copy);
        added.push_back(idBeside(occurrence.id(), copy));
    }
}

bool isPlainOccurrence(const Occurrence& occurrence)
{
    return XCAFDoc_ShapeTool::IsReference(occurrence.label()) && isPlain(occurrence.label());
}

} // namespace

std::optional<std::vector<std::string>> copiedAlone(const Document& document, const CopyEdit& edit,
                                                    const std::function<void(const TDF_Label&)>& note)
{
    const std::vector<Occurrence> occurrences = topmostOccurrences(document, edit.components);
    if (!std::ranges::all_of(occurrences, isPlainOccurrence))
        return std::nullopt;
    std::vector<std::string> added;
    for (const Occurrence& occurrence : occurrences)
        copyPlain(document, occurrence, edit, note, added);
    return added;
}

std::vector<std::string> apply(const Document& document, const CopyEdit& edit)
{
    std::vector<std::string> added;
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        const bool isRootAssembly = occurrence.isRootAssembly();
        if (!isRootAssembly)
            detachPart(document, occurrence.label());
        if (isPlainOccurrence(occurrence)) {
            copyPlain(
                document, occurrence, edit, [](const TDF_Label&) {}, added);
            continue;
        }
        for (const GkMatrix3d& each : edit.motions) {
            const gp_Trsf motion = toMotion(each);
            const TDF_Label copy = isRootAssembly
                                       ? copyRootAssembly(document, occurrence.label(), motion)
                                       : addOccurrence(document, occurrence.parent(), occurrence.label(),
                                                       occurrence.shown(), occurrence.moved(motion));
            added.push_back(idBeside(occurrence.id(), copy));
        }
    }
    return added;
}

} // namespace Vs::Kernel
