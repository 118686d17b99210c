#include "Server/DataModel/Kernel/LabelState.h"

#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDataStd_Name.hxx>
#include <TDataStd_UAttribute.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_Location.hxx>

#include <utility>

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

} // namespace

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
    return state;
}

void LabelState::putOn(const TDF_Label& label) const
{
    if (name)
        TDataStd_Name::Set(label, *name);
    else
        label.ForgetAttribute(TDataStd_Name::GetID());
    mark(label, Kernel::namedByUser(), namedByUser);
    mark(label, XCAFDoc::InvisibleGUID(), hidden);
    mark(label, removedMark(), removed);
    if (place)
        XCAFDoc_Location::Set(label, *place);
    else
        label.ForgetAttribute(XCAFDoc_Location::GetID());
}

bool LabelState::operator==(const LabelState& other) const
{
    return name == other.name && namedByUser == other.namedByUser && hidden == other.hidden &&
           removed == other.removed && place == other.place;
}

void LabelLog::note(const TDF_Label& label)
{
    if (m_known.Add(label))
        m_noted.push_back({label, LabelState::of(label), {}});
}

std::vector<LabelDifference> LabelLog::take()
{
    m_known.Clear();
    for (LabelDifference& each : m_noted)
        each.after = LabelState::of(each.label);
    std::erase_if(m_noted, [](const LabelDifference& each) { return each.before == each.after; });
    return std::exchange(m_noted, {});
}

bool isRemoved(const TDF_Label& label)
{
    return label.IsAttribute(removedMark());
}

void markRemoved(const TDF_Label& label)
{
    TDataStd_UAttribute::Set(label, removedMark());
}

} // namespace Vs::Kernel
