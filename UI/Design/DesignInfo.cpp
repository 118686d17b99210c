#include "UI/Design/DesignInfo.h"

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Measure/MeasuredParts.h"

#include <QJsonArray>

#include <boost/format.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace Vu::Design {
namespace {

constexpr double kCubicMillimetresInCubicCentimetre = 1000;

/// Occurrences of the same part are numbered after a colon.
std::wstring withoutNumber(const std::wstring& name)
{
    const size_t end = name.find_last_not_of(L"0123456789");
    return end != std::wstring::npos && end > 0 && name[end] == L':' && end + 1 < name.size()
               ? name.substr(0, end)
               : name;
}

class Collector
{
public:
    explicit Collector(DesignInfo& info) : m_info(info) {}

    void all(const Vs::Component& root)
    {
        collect(root, GkMatrix3d(), true, m_info.structure);
        m_info.differentParts = m_bodies.size();
        for (const Vs::Body* body : m_bodies)
            if (const auto mesh = body->mesh())
                m_info.triangles += mesh->triangles.size() / 3;
        if (!m_box.isEmpty()) {
            const GkVector3d size = m_box.high() - m_box.low();
            m_info.size = std::vector<double>{size.x, size.y, size.z};
        }
    }

    std::vector<Vs::PartToMeasure> parts() const
    {
        std::vector<Vs::PartToMeasure> parts;
        for (const auto& [key, part] : m_parts)
            parts.push_back(part);
        return parts;
    }

private:
    /// Returns what two components have in common if they show the same thing: names and bodies, all the way
    /// down.
    std::wstring collect(const Vs::Component& component, const GkMatrix3d& placement, bool visible,
                         DesignInfo::Node& node)
    {
        std::wstring same = withoutNumber(component.name) + L'\n';
        visible = visible && component.visible;
        if (component.body) {
            addBody(component, placement);
            same += std::to_wstring(reinterpret_cast<uintptr_t>(component.body.get())) + L'\n';
        }
        std::unordered_map<std::wstring, size_t> known;
        for (const auto& child : component.children) {
            DesignInfo::Node made;
            made.name = withoutNumber(child->name);
            count(*child, visible);
            const std::wstring key = collect(*child, placement * child->placement, visible, made);
            const auto [place, isNew] = known.try_emplace(key, node.children.size());
            if (isNew)
                node.children.push_back(std::move(made));
            else
                ++node.children[place->second].count;
            same += key;
        }
        return same + L'\t';
    }

    void count(const Vs::Component& component, bool visible)
    {
        if (component.body)
            ++m_info.parts;
        else
            ++m_info.assemblies;
        if (!visible || !component.visible)
            ++m_info.hidden;
    }

    void addBody(const Vs::Component& component, const GkMatrix3d& placement)
    {
        const double scale = Vs::scaleOf(placement);
        // Placements of the same size differ in their last digits.
        const auto key = std::pair(component.body.get(), static_cast<float>(scale));
        const auto [place, isNew] = m_parts.try_emplace(key);
        if (isNew)
            place->second = {.body = component.body, .scale = scale, .count = 0};
        ++place->second.count;
        m_bodies.insert(component.body.get());
        if (const auto mesh = component.body->mesh())
            for (size_t i = 0; i + 2 < mesh->positions.size(); i += 3)
                m_box.add(placement *
                          GkPoint3d(mesh->positions[i], mesh->positions[i + 1], mesh->positions[i + 2]));
    }

    DesignInfo& m_info;
    std::map<std::pair<const Vs::Body*, float>, Vs::PartToMeasure> m_parts;
    std::set<const Vs::Body*> m_bodies;
    BBox m_box;
};

std::wstring number(double value)
{
    return (boost::wformat(L"%.7g") % value).str();
}

void addTree(const DesignInfo::Node& node, const std::wstring& indent, std::wstring& text)
{
    for (const DesignInfo::Node& child : node.children) {
        text += L'\n' + indent + child.name;
        if (child.count > 1)
            text += L" \u00d7 " + std::to_wstring(child.count);
        addTree(child, indent + L"  ", text);
    }
}

QJsonArray treeOf(const DesignInfo::Node& node)
{
    QJsonArray all;
    for (const DesignInfo::Node& child : node.children) {
        QJsonObject one{{"name", QString::fromStdWString(child.name)}};
        if (child.count > 1)
            one["count"] = static_cast<qint64>(child.count);
        if (!child.children.empty())
            one["children"] = treeOf(child);
        all.append(one);
    }
    return all;
}

QJsonValue valueOf(const std::optional<double>& number)
{
    return number ? QJsonValue(*number) : QJsonValue(QJsonValue::Null);
}

} // namespace

std::optional<double> DesignInfo::mass() const
{
    if (!density || !volume)
        return std::nullopt;
    return *volume / kCubicMillimetresInCubicCentimetre * *density;
}

std::wstring DesignInfo::text() const
{
    const auto measured = [this](const std::optional<double>& value, const wchar_t* unit) {
        return value ? (isExact ? L"" : L"about ") + number(*value) + unit : std::wstring(L"unknown");
    };
    std::wstring all = L"Name: " + name;
    if (!file.empty())
        all += L"\nFile: " + file;
    all += L"\nUnit: mm\nParts: " + std::to_wstring(parts) + L", " + std::to_wstring(differentParts) +
           L" different\nAssemblies: " + std::to_wstring(assemblies);
    if (hidden > 0)
        all += L"\nHidden: " + std::to_wstring(hidden);
    all += L"\nTriangles: " + std::to_wstring(triangles);
    if (size)
        all += L"\nSize: " + number((*size)[0]) + L" \u00d7 " + number((*size)[1]) + L" \u00d7 " +
               number((*size)[2]) + L" mm";
    all += L"\nVolume: " + measured(volume, L" mm\u00b3") + L"\nArea: " + measured(area, L" mm\u00b2");
    if (density)
        all += L"\nMass: " + measured(mass(), L" g") + L" at " + number(*density) + L" g/cm\u00b3";
    all += L"\nStructure:";
    addTree(structure, L"  ", all);
    return all;
}

QJsonObject DesignInfo::json() const
{
    QJsonObject all{{"name", QString::fromStdWString(name)},
                    {"file", QString::fromStdWString(file)},
                    {"unit", "mm"},
                    {"parts", static_cast<qint64>(parts)},
                    {"differentParts", static_cast<qint64>(differentParts)},
                    {"assemblies", static_cast<qint64>(assemblies)},
                    {"hidden", static_cast<qint64>(hidden)},
                    {"triangles", static_cast<qint64>(triangles)},
                    {"volume", valueOf(volume)},
                    {"area", valueOf(area)},
                    {"exact", isExact},
                    {"density", valueOf(density)},
                    {"mass", valueOf(mass())},
                    {"structure", treeOf(structure)}};
    if (size)
        all["size"] = QJsonArray{(*size)[0], (*size)[1], (*size)[2]};
    return all;
}

DesignInfo infoOf(const Vs::Asset& asset)
{
    DesignInfo info;
    info.name = asset.document()->displayName();
    info.file =
        asset.document()->path().empty() ? asset.document()->importedFrom() : asset.document()->path();
    Collector collector(info);
    collector.all(*asset.components());
    if (const auto measured = Vs::measureParts(collector.parts(), [] { return true; })) {
        info.volume = measured->volume;
        info.area = measured->area;
        info.isExact = measured->isExact;
    }
    return info;
}

} // namespace Vu::Design
