#include "Server/DataModel/Edit/EditRequest.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/Private/ComponentGroups.h"
#include "Server/DataModel/Edit/Private/ComponentLimit.h"
#include "Server/DataModel/Edit/Private/Motion.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <cmath>

namespace Vs {

using DataModel::localized;
using DataModel::localizedFormat;

namespace {

constexpr size_t kMostCopies = 100000;
constexpr double kSmallestBlend = 1e-4; // mm
constexpr double kLargestBlend = 1e7;   // mm

using Paths = std::vector<ObjectPath>;

Paths toPaths(const std::vector<std::string>& components)
{
    Paths paths;
    for (const std::string& component : components)
        paths.push_back({.component = component});
    return paths;
}

template <class Edit>
Paths namedBy(const Edit& edit) requires requires
{
    edit.components;
}
{
    return toPaths(edit.components);
}

Paths namedBy(const NestEdit& edit)
{
    Paths paths = toPaths(edit.components);
    if (!paths.empty())
        paths.push_back({.component = edit.parent});
    return paths;
}

Paths namedBy(const CombineEdit& edit)
{
    Paths paths = toPaths(edit.tools);
    if (!paths.empty())
        paths.push_back({.component = edit.target});
    return paths;
}

Paths namedBy(const BlendEdit& edit)
{
    return edit.edges;
}

Paths namedBy(const ColourEdit& edit)
{
    return edit.objects;
}

std::wstring whyWrong(const GkMatrix3d& motion)
{
    if (!isMotion(motion))
        return localized("EditNoMotion", "a motion can move and turn things, but not scale or mirror them.");
    if (!isNear(motion))
        return localized("EditTooFar", "that is farther than a thousand kilometres.");
    return {};
}

std::wstring whyWrong(const MoveEdit& edit)
{
    return whyWrong(edit.motion);
}

std::wstring whyWrong(const CopyEdit& edit)
{
    if (edit.motions.size() * edit.components.size() > kMostCopies)
        return localizedFormat("EditTooMany", "that would make more than %1% copies at once.", kMostCopies);
    for (const GkMatrix3d& motion : edit.motions)
        if (std::wstring why = whyWrong(motion); !why.empty())
            return why;
    return {};
}

std::wstring whyWrong(const MirrorEdit& edit)
{
    const double length = edit.normal.length();
    if (!(length > 1e-12 && std::isfinite(length)))
        return localized("EditNoMirror", "a mirror needs a direction to face.");
    return whyWrong(GkMatrix3d::translation(edit.point - GkPoint3d()));
}

std::wstring whyWrong(const NestEdit&)
{
    return {};
}

std::wstring whyWrong(const CombineEdit&)
{
    return {};
}

std::wstring whyWrong(const BlendEdit& edit)
{
    return edit.size >= kSmallestBlend && edit.size <= kLargestBlend
               ? std::wstring()
               : localized("EditWrongSize", "the size must be a length from 0.0001 to 10000000 mm.");
}

std::wstring whyWrong(const ColourEdit& edit)
{
    const auto isShare = [](float value) { return value >= 0 && value <= 1; };
    const Colour colour = edit.colour.value_or(Colour());
    return isShare(colour.r) && isShare(colour.g) && isShare(colour.b) && isShare(colour.a)
               ? std::wstring()
               : localized("EditWrongColour", "the components of a colour are numbers from 0 to 1.");
}

/// Why there would be too many copies, once their originals are known to exist.
std::wstring whyTooMany(const Asset& asset, const ModelEdit& edit)
{
    if (const auto* copy = std::get_if<CopyEdit>(&edit))
        return Vs::whyTooMany(asset, copy->components, copy->motions.size());
    if (const auto* mirror = std::get_if<MirrorEdit>(&edit))
        return Vs::whyTooMany(asset, mirror->components, 1);
    return {};
}

std::wstring textOf(const EditError& error)
{
    switch (error.fault()) {
    case EditFault::NoBody:
        return localizedFormat("EditNoBody", "\"%1%\" is an assembly; one of its bodies is needed.",
                               error.subject());
    case EditFault::NoSolid:
        return localizedFormat("EditNoSolid",
                               "\"%1%\" is not a solid: it has faces that don't enclose a space.",
                               error.subject());
    case EditFault::Triangles:
        return localizedFormat("EditTriangles", "\"%1%\" consists of triangles only and has no exact shape.",
                               error.subject());
    case EditFault::OwnTool:
        return localizedFormat("EditOwnTool", "\"%1%\" can't be combined with itself.", error.subject());
    case EditFault::OwnParent:
        return localizedFormat("EditOwnParent", "\"%1%\" can't be put into itself.", error.subject());
    case EditFault::NothingLeft:
        return localizedFormat("EditNothingLeft", "nothing would be left of \"%1%\".", error.subject());
    case EditFault::Apart:
        return localizedFormat("EditApart", "\"%1%\" and the other bodies don't overlap.", error.subject());
    case EditFault::NoSuchPart:
        return localizedFormat("EditNoSuchPart", "\"%1%\" has no such edge or face.", error.subject());
    case EditFault::FreeEdge:
        return localizedFormat("EditFreeEdge", "an edge of \"%1%\" doesn't lie between two faces.",
                               error.subject());
    case EditFault::SmoothEdge:
        return localizedFormat(
            "EditSmoothEdge",
            "at an edge of \"%1%\" the faces meet smoothly, so there is nothing to round or cut off.",
            error.subject());
    case EditFault::TooLarge:
        return localizedFormat("EditTooLarge",
                               "there is no room for that size at the edges of \"%1%\", or they can't be "
                               "changed together; try a smaller size or fewer edges.",
                               error.subject());
    case EditFault::Invalid:
        return localizedFormat(
            "EditInvalid",
            "the geometry kernel can't combine \"%1%\" with these bodies: the result is not a valid body.",
            error.subject());
    case EditFault::Crashed:
        return localizedFormat("EditCrashed",
                               "the geometry kernel crashed on \"%1%\". The model is unchanged.",
                               error.subject());
    case EditFault::TooLong:
        return localizedFormat("EditTooLong", "the geometry kernel did not finish with \"%1%\".",
                               error.subject());
    case EditFault::Cancelled:
        return localizedFormat(
            "EditCancelled", "the change of \"%1%\" was cancelled. The model is unchanged.", error.subject());
    case EditFault::Refused:
        break;
    }
    return localizedFormat("EditRefused", "the geometry kernel refuses to change \"%1%\".", error.subject());
}

// A body that came from a file learns which shape it stands for before that shape changes.
void meetShapes(const Component& component, ModelKernel& kernel)
{
    if (auto* body = cast<ModelBody>(component.body.get()); body && body->revision() == 0)
        body->revision(kernel.revision(body->entry()));
    for (const auto& child : component.children)
        meetShapes(*child, kernel);
}

} // namespace

void EditRequest::expectSoon(const Asset& asset)
{
    asset.data().source().readAhead();
}

EditRequest* EditRequest::make(const Asset* asset, const std::wstring& name, ModelEdit edit)
{
    return new EditRequest(asset, name, std::move(edit));
}

EditRequest::EditRequest(const Asset* asset, const std::wstring& name, ModelEdit edit)
    : Implements(name), m_asset(asset), m_edit(std::move(edit))
{
}

void EditRequest::onExecute(Asset& asset, Status& status)
{
    m_added.clear();
    const Paths named = std::visit([](const auto& edit) { return namedBy(edit); }, m_edit);
    std::wstring why = std::visit([](const auto& edit) { return whyWrong(edit); }, m_edit);
    if (named.empty() || &asset != m_asset)
        why = localized("EditNothing", "no object of this model that can be changed was given.");
    if (!why.empty()) {
        status.addError(name() + L": " + why);
        return;
    }
    for (const ObjectPath& path : named)
        if (!resolvePath(path, asset, status))
            return;
    if (why = whyTooMany(asset, m_edit); !why.empty()) {
        status.addError(name() + L": " + why);
        return;
    }
    try {
        m_added = asset.data().history().changeModel([&](ModelKernel& kernel) {
            for (const ObjectPath& path : named)
                meetShapes(*asset.findComponent(path.component), kernel);
            return kernel.edit(m_edit);
        });
        if (m_groupAdded)
            ComponentGroups(asset).add(m_added);
    } catch (const EditError& error) {
        status.addError(name() + L": " + textOf(error));
    }
}

} // namespace Vs
