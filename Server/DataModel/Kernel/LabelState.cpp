#include "Server/DataModel/Kernel/LabelState.h"

#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_AttributeIterator.hxx>
#include <TDF_TagSource.hxx>
#include <TDataStd_Name.hxx>
#include <TDataStd_TreeNode.hxx>
#include <TDataStd_UAttribute.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_Location.hxx>

#include <algorithm>
#include <utility>
#include <vector>

namespace Vs::Kernel {

namespace {

const Standard_GUID& removedMark()
{
    static const Standard_GUID mark("b3c54c0e-6a0d-4c8f-8f0e-5b5d1c0a7e42");
    return mark;
}

void mark(const TDF_Label& label, const Standard_GUID& id, bool set)
{
    if (set)
        TDataStd_UAttribute::Set(label, id);
    else
        label.ForgetAttribute(id);
}

const Standard_GUID& surfaceColourKind()
{
    static const Standard_GUID kind = XCAFDoc::ColorRefGUID(XCAFDoc_ColorSurf);
    return kind;
}

const Standard_GUID& colourKind()
{
    static const Standard_GUID kind = XCAFDoc::ColorRefGUID(XCAFDoc_ColorGen);
    return kind;
}

LabelLink linkOf(const TDF_Label& label, const Standard_GUID& kind)
{
    Handle(TDataStd_TreeNode) node;
    if (!label.FindAttribute(kind, node) || !node->HasFather())
        return {};
    return {node->Father()->Label(), node->HasNext() ? node->Next()->Label() : TDF_Label()};
}

// An attribute that is there stays, in no list if need be: its neighbours, and what the kernel keeps of its
// own changes, know it by its address.
void putLink(const TDF_Label& label, const Standard_GUID& kind, const LabelLink& link)
{
    if (linkOf(label, kind) == link)
        return;
    if (link.to.IsNull()) {
        if (Handle(TDataStd_TreeNode) node; label.FindAttribute(kind, node))
            node->Remove();
        return;
    }
    const Handle(TDataStd_TreeNode) all = TDataStd_TreeNode::Set(link.to, kind);
    const Handle(TDataStd_TreeNode) one = TDataStd_TreeNode::Set(label, kind);
    one->Remove();
    Handle(TDataStd_TreeNode) next;
    if (!link.next.IsNull() && link.next.FindAttribute(kind, next) && next->Father() == all)
        next->InsertBefore(one);
    else
        all->Append(one);
}

bool isBare(const TDF_Label& label)
{
    for (TDF_AttributeIterator each(label); each.More(); each.Next()) {
        const auto node = Handle(TDataStd_TreeNode)::DownCast(each.Value());
        if (node.IsNull() || node->HasFather())
            return false;
    }
    return true;
}

} // namespace

void keepNumber(const TDF_Label& label)
{
    const Handle(TDF_TagSource) numbers = TDF_TagSource::Set(label.Father());
    if (!isBare(label))
        numbers->Set(std::max(numbers->Get(), label.Tag()));
    else if (numbers->Get() == label.Tag())
        numbers->Set(label.Tag() - 1);
}

LabelState LabelState::of(const TDF_Label& label)
{
    LabelState state;
    if (Handle(TDataStd_Name) name; label.FindAttribute(TDataStd_Name::GetID(), name))
        state.name = name->Get();
    state.namedByUser = label.IsAttribute(Kernel::namedByUser());
    state.hidden = !isShown(label);
    state.removed = isRemoved(label);
    if (Handle(XCAFDoc_Location) place; label.FindAttribute(XCAFDoc_Location::GetID(), place))
        state.place = place->Get();
    state.shown = linkOf(label, XCAFDoc::ShapeRefGUID());
    state.surfaceColour = linkOf(label, surfaceColourKind());
    state.colour = linkOf(label, colourKind());
    return state;
}

void LabelState::putOn(const TDF_Label& label) const
{
    // From one of thousands of new labels nothing has to be taken.
    const bool isNew = !label.HasAttribute();
    const bool comesBack = !removed && !isNew && isRemoved(label);
    if (name)
        TDataStd_Name::Set(label, *name);
    else if (!isNew)
        label.ForgetAttribute(TDataStd_Name::GetID());
    const auto putMark = [&](const Standard_GUID& id, bool isSet) {
        if (isSet || !isNew)
            mark(label, id, isSet);
    };
    putMark(Kernel::namedByUser(), namedByUser);
    putMark(XCAFDoc::InvisibleGUID(), hidden);
    putMark(removedMark(), removed);
    if (place)
        XCAFDoc_Location::Set(label, *place);
    else if (!isNew)
        label.ForgetAttribute(XCAFDoc_Location::GetID());
    const auto put = [&](const Standard_GUID& kind, const LabelLink& link) {
        if (!link.to.IsNull() || !isNew)
            putLink(label, kind, link);
    };
    put(XCAFDoc::ShapeRefGUID(), shown);
    put(surfaceColourKind(), surfaceColour);
    put(colourKind(), colour);
    if (!shown.to.IsNull() || comesBack || isBare(label))
        keepNumber(label);
}

bool LabelState::operator==(const LabelState& other) const
{
    return name == other.name && namedByUser == other.namedByUser && hidden == other.hidden &&
           removed == other.removed && place == other.place && shown == other.shown &&
           surfaceColour == other.surfaceColour && colour == other.colour;
}

bool isPlain(const TDF_Label& label)
{
    const Standard_GUID* const known[] = {&TDataStd_Name::GetID(),
                                          &Kernel::namedByUser(),
                                          &XCAFDoc::InvisibleGUID(),
                                          &XCAFDoc_Location::GetID(),
                                          &XCAFDoc::ShapeRefGUID(),
                                          &surfaceColourKind(),
                                          &colourKind()};
    for (TDF_AttributeIterator each(label); each.More(); each.Next())
        if (std::ranges::none_of(known, [&](const auto* id) { return *id == each.Value()->ID(); }))
            return false;
    return true;
}

LabelLink linkInFront(const TDF_Label& to, const Standard_GUID& kind)
{
    Handle(TDataStd_TreeNode) all;
    const bool others = to.FindAttribute(kind, all) && all->HasFirst();
    return {to, others ? all->First()->Label() : TDF_Label()};
}

void LabelLog::note(const TDF_Label& label)
{
    if (!label.HasAttribute())
        m_noted.push_back({label, {}, {}});
    else if (m_known.Add(label))
        m_noted.push_back({label, LabelState::of(label), {}});
}

LabelDifferences LabelLog::take()
{
    // A map that is emptied keeps its size: after thousands, every later one would be walked over.
    TDF_LabelMap().Exchange(m_known);
    for (LabelDifference& each : m_noted)
        each.after = LabelState::of(each.label);
    std::erase_if(m_noted, [](const LabelDifference& each) { return each.before == each.after; });
    return std::exchange(m_noted, {});
}

bool isRemoved(const TDF_Label& label)
{
    return label.IsAttribute(removedMark());
}

void markRemoved(const TDF_Label& label, bool removed)
{
    mark(label, removedMark(), removed);
}

void clearLabel(const TDF_Label& label)
{
    std::vector<Handle(TDF_Attribute)> attributes;
    for (TDF_AttributeIterator each(label); each.More(); each.Next())
        if (!each.Value()->IsKind(STANDARD_TYPE(TDataStd_TreeNode)))
            attributes.push_back(each.Value());
    for (const Handle(TDF_Attribute) & each : attributes)
        label.ForgetAttribute(each);
    keepNumber(label);
}

} // namespace Vs::Kernel
