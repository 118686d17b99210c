#include "UI/Base/Window/SelectionText.h"

#include "Server/Body/Body.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Types/LengthUnit.h"
#include "UI/Base/Command/Private/Localized.h"

#include <QLocale>

#include <cmath>

namespace Vu {
namespace {

using Leaf = Vs::ObjectPath::Leaf;

struct Measured
{
    std::wstring form; ///< Empty if the mesh doesn't say.
    double size = 0;   ///< In millimetres, or their square.
    bool isExact = false;
};

Measured measureFace(const Vs::BodyMesh& mesh, const Vs::BodyMesh::Face& face)
{
    // Normals have the precision of a float.
    constexpr double kSameDirection = 1e-6;
    Measured measured;
    GkVector3d first;
    bool isPlane = true;
    const size_t end = size_t(face.firstTriangle) + face.triangleCount;
    for (size_t i = face.firstTriangle; i < end; ++i) {
        const GkPoint3d a = Vs::pointAt(mesh.positions, mesh.triangles[3 * i]);
        const GkPoint3d b = Vs::pointAt(mesh.positions, mesh.triangles[3 * i + 1]);
        const GkPoint3d c = Vs::pointAt(mesh.positions, mesh.triangles[3 * i + 2]);
        const GkVector3d across = (b - a).crossProduct(c - a);
        measured.size += across.length() / 2;
        // The normals are those of the exact surface.
        for (size_t corner = 0; corner < 3; ++corner) {
            const GkPoint3d at = Vs::pointAt(mesh.normals, mesh.triangles[3 * i + corner]);
            const GkVector3d normal(at.x, at.y, at.z);
            if (first.length() == 0)
                first = normal;
            isPlane = isPlane && first.dotProduct(normal) > 1 - kSameDirection;
        }
    }
    measured.isExact = isPlane;
    if (isPlane)
        measured.form = localized("FormPlane", "plane");
    return measured;
}

Measured measureEdge(const Vs::BodyMesh& mesh, uint32_t index)
{
    Measured measured;
    const size_t first = mesh.edgeStarts[index], end = mesh.edgeStarts[index + 1];
    for (size_t i = first; i + 1 < end; ++i)
        measured.size += Vs::pointAt(mesh.edgePoints, i).distanceTo(Vs::pointAt(mesh.edgePoints, i + 1));
    measured.isExact = end - first == 2;
    if (measured.isExact)
        measured.form = localized("FormLine", "line");
    return measured;
}

/// Nothing for something without a size of its own, or no longer existing.
Measured measure(const Vs::ObjectPath& path, const Vs::Component& component)
{
    const auto mesh = component.body ? component.body->mesh() : nullptr;
    if (!mesh)
        return {};
    if (path.leaf == Leaf::Face && path.index < mesh->faces.size())
        return measureFace(*mesh, mesh->faces[path.index]);
    if (path.leaf == Leaf::Edge && path.index + 1 < mesh->edgeStarts.size())
        return measureEdge(*mesh, path.index);
    return {};
}

std::wstring kindOf(Leaf leaf)
{
    switch (leaf) {
    case Leaf::Face:
        return localized("KindFace", "Face");
    case Leaf::Edge:
        return localized("KindEdge", "Edge");
    case Leaf::Vertex:
        return localized("KindVertex", "Vertex");
    case Leaf::Solid:
        return localized("KindSolid", "Solid");
    case Leaf::Body:
        return localized("KindBody", "Body");
    case Leaf::Component:
        break;
    }
    return {};
}

std::wstring sizeText(const Measured& measured, Leaf leaf, double scale)
{
    const Vs::LengthUnit& unit = Vs::LengthUnit::display();
    const bool isArea = leaf == Leaf::Face;
    const double factor = scale / unit.millimetres;
    constexpr int kDigits = 6;
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const QString number = locale.toString(measured.size * (isArea ? factor * factor : factor), 'g', kDigits);
    const std::wstring text = number.toStdWString() + L' ' + QString::fromLatin1(unit.key).toStdWString() +
                              (isArea ? L"\u00b2" : L"");
    return measured.isExact ? text : localizedFormat("SizeAbout", "about %1%", text);
}

} // namespace

std::wstring selectionText(const Vs::LogicalSelection& selection, const Vs::Asset& asset)
{
    const Vs::ObjectPath& path = selection.path();
    Vs::Status gone;
    const Vs::Component* component = Vs::resolvePath(path, asset, gone);
    if (!component)
        return {};
    const std::wstring name =
        component->name.empty() && component->body ? component->body->name() : component->name;
    std::wstring text = kindOf(path.leaf);
    text = text.empty() ? name : localizedFormat("SelectionOf", "%1% of %2%", text, name);
    // While a preview is shown, the part's number refers to another one, and the part doesn't exist.
    const Measured measured = Vs::showsPreview(asset) ? Measured() : measure(path, *component);
    if (!measured.form.empty())
        text += L", " + measured.form;
    if (measured.size > 0) {
        const double volume = Vs::placementOf(path, asset).value_or(GkMatrix3d()).det();
        text += L", " + sizeText(measured, path.leaf, std::cbrt(std::abs(volume)));
    }
    return text;
}

std::wstring selectionText(Vs::SelectionMgr& manager, const Vs::Asset& asset)
{
    const auto& selections = manager.selectionSet().selections();
    if (selections.empty())
        return {};
    if (selections.size() > 1)
        return localizedFormat("SelectionSeveral", "%1% selected", selections.size());
    const auto* object = Vs::cast<Vs::LogicalSelection>(selections.front().get());
    return object ? selectionText(*object, asset) : std::wstring();
}

} // namespace Vu
