#include "UI/Base/Workspace/Layout.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Xml.h"

#include <QFile>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>
#include <optional>

namespace Vu {
namespace {

struct PlacementName
{
    EPlacement placement;
    const char* name;
};

constexpr std::array<PlacementName, 6> kPlacements = {{
    {EPlacement::Fill, "fill"},
    {EPlacement::Left, "left"},
    {EPlacement::Right, "right"},
    {EPlacement::Top, "top"},
    {EPlacement::Bottom, "bottom"},
    {EPlacement::Floating, "floating"},
}};
constexpr int kLargestExtent = 4000;
/// No screen reaches farther.
constexpr int kLargestCoordinate = 32000;
/// Nobody can use a layout nested more deeply; the bound keeps a hostile file from exhausting the stack.
constexpr int kDeepest = 32;

QLatin1String nameOf(EPlacement placement)
{
    for (const PlacementName& row : kPlacements)
        if (row.placement == placement)
            return QLatin1String(row.name);
    return QLatin1String("fill");
}

class LayoutReader
{
public:
    LayoutReader(const std::wstring& filter, XmlFile& xml) : m_filter(filter), m_xml(xml) {}

    void readChildren(Area& parent, int depth)
    {
        while (m_xml.nextElement()) {
            if (m_xml.name() != QLatin1String("area")) {
                m_xml.problem(L"A layout has no element <" + m_xml.name().toString().toStdWString() + L">.");
                m_xml.skip();
            } else if (depth >= kDeepest) {
                m_xml.problem(L"The areas are nested too deeply.");
                m_xml.skip();
            } else {
                readArea(parent, depth);
            }
        }
    }

private:
    void readArea(Area& parent, int depth)
    {
        const std::optional<std::wstring> form = m_xml.optionalAttribute("filter");
        if (form && *form != m_filter) {
            m_xml.skip();
            return;
        }
        const std::wstring contents = m_xml.attribute("contents");
        auto area = std::make_unique<Area>(
            m_xml.attribute("name"),
            contents.empty() ? nullptr
                             : Vs::UniqueString::find(QString::fromStdWString(contents).toStdString()));
        area->placement(placement("placement", EPlacement::Fill));
        area->collapsedPlacement(placement("collapsedPlacement", EPlacement::Left));
        area->visible(flag("visible", true));
        area->collapsed(flag("collapsed", false));
        area->ignoreOverlayable(flag("ignoreOverlayable", false));
        area->extent(number("extent", kLargestExtent, L"an extent"));
        area->point(
            {number("x", kLargestCoordinate, L"a place"), number("y", kLargestCoordinate, L"a place")});
        readChildren(*area, depth + 1);
        parent.addChild(std::move(area));
    }

    EPlacement placement(const char* attribute, EPlacement fallBack)
    {
        const std::wstring text = m_xml.attribute(attribute);
        if (text.empty())
            return fallBack;
        for (const PlacementName& row : kPlacements)
            if (QString::fromStdWString(text) == QLatin1String(row.name))
                return row.placement;
        m_xml.problem(L"\"" + text + L"\" is not a placement.");
        return fallBack;
    }

    bool flag(const char* attribute, bool fallBack)
    {
        const std::wstring text = m_xml.attribute(attribute);
        if (!text.empty() && text != L"true" && text != L"false")
            m_xml.problem(L"\"" + text + L"\" is neither true nor false.");
        return text.empty() ? fallBack : text == L"true";
    }

    int number(const char* attribute, int largest, const std::wstring& what)
    {
        const std::wstring text = m_xml.attribute(attribute);
        if (text.empty())
            return 0;
        bool ok = false;
        const int value = QString::fromStdWString(text).toInt(&ok);
        if (ok && value >= 0 && value <= largest)
            return value;
        m_xml.problem(L"\"" + text + L"\" is not " + what + L" in pixels.");
        return 0;
    }

    const std::wstring& m_filter;
    XmlFile& m_xml;
};

void write(QXmlStreamWriter& xml, const Area& area)
{
    xml.writeStartElement(QStringLiteral("area"));
    const auto attribute = [&](const char* name, const QString& value) {
        xml.writeAttribute(QLatin1String(name), value);
    };
    if (!area.name().empty())
        attribute("name", QString::fromStdWString(area.name()));
    if (area.contents())
        attribute("contents", QString::fromStdString(area.contents()->text()));
    if (area.placement() != EPlacement::Fill)
        attribute("placement", nameOf(area.placement()));
    if (area.collapsedPlacement() != EPlacement::Left)
        attribute("collapsedPlacement", nameOf(area.collapsedPlacement()));
    if (!area.visible())
        attribute("visible", QStringLiteral("false"));
    if (area.collapsed())
        attribute("collapsed", QStringLiteral("true"));
    if (area.ignoreOverlayable())
        attribute("ignoreOverlayable", QStringLiteral("true"));
    if (area.extent() > 0)
        attribute("extent", QString::number(area.extent()));
    if (!(area.point() == Vs::Point2())) {
        attribute("x", QString::number(std::clamp(area.point().x, 0, kLargestCoordinate)));
        attribute("y", QString::number(std::clamp(area.point().y, 0, kLargestCoordinate)));
    }
    for (const auto& child : area.children())
        write(xml, *child);
    xml.writeEndElement();
}

/// Takes the first canvas below a split view out of it.
std::unique_ptr<Area> takeFirstCanvas(Area& split)
{
    std::vector<Area*> canvases;
    split.childrenByContents(Area::graphicsCanvas(), canvases);
    return canvases.empty() ? nullptr : canvases.front()->parent()->removeChild(canvases.front());
}

/// Puts `replacement` where `child` stands among its siblings, and deletes `child`.
void replaceChild(Area* child, std::unique_ptr<Area> replacement)
{
    Area* parent = child->parent();
    std::vector<std::unique_ptr<Area>> siblings;
    while (!parent->children().empty())
        siblings.push_back(parent->removeChild(parent->children().front().get()));
    for (std::unique_ptr<Area>& sibling : siblings) {
        if (sibling.get() == child)
            sibling.swap(replacement);
        parent->addChild(std::move(sibling));
    }
}

} // namespace

Layout* Layout::load(const std::wstring& path, const std::wstring& filter, Vs::Status& status)
{
    auto layout = std::make_unique<Layout>();
    XmlFile xml(path, "layout", status);
    if (xml.open())
        LayoutReader(filter, xml).readChildren(*layout, 0);
    if (xml.broken()) {
        // What was read before the error is not the layout that its author intended.
        layout = std::make_unique<Layout>();
        layout->addChild(std::make_unique<Area>(L"Canvas", Area::graphicsCanvas()));
    } else if (layout->children().empty()) {
        status.addError(path + L": the layout has no areas in the form \"" + filter + L"\".");
        layout->addChild(std::make_unique<Area>(L"Canvas", Area::graphicsCanvas()));
    }
    return layout.release();
}

Layout* Layout::load(const std::wstring& path, const std::wstring& filter)
{
    Vs::Status status;
    Layout* layout = load(path, filter, status);
    if (status.isError())
        Application::get()->inform(status.toString());
    return layout;
}

void Layout::persist(const std::wstring& path, Area* root)
{
    if (!root)
        return;
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("layout"));
    for (const auto& child : root->children())
        write(xml, *child);
    xml.writeEndElement();
    xml.writeEndDocument();

    // Shells persist it whenever they go; mostly it is as it was.
    QFile old(QString::fromStdWString(path));
    if (old.open(QIODevice::ReadOnly) && old.readAll() == content)
        return;
    try {
        Vs::OwnFiles::write(path, {content.constData(), static_cast<size_t>(content.size())});
    } catch (const Vs::Exception& error) {
        Application::get()->inform(L"The layout is not kept: " + error.message() + L'.');
    }
}

void Layout::removeSplitViews(Area* root)
{
    std::vector<Area*> splits;
    root->childrenByContents(Area::splitView(), splits);
    // From the innermost outwards, so that a split inside a split has gone when its turn comes.
    for (auto split = splits.rbegin(); split != splits.rend(); ++split) {
        Area* parent = (*split)->parent();
        const EPlacement placement = (*split)->placement();
        std::unique_ptr<Area> canvas = takeFirstCanvas(**split);
        const std::unique_ptr<Area> gone = parent->removeChild(*split);
        if (!canvas)
            continue;
        canvas->placement(placement);
        parent->addChild(std::move(canvas));
    }
}

void Layout::carryCanvases(Area& from, Area& to)
{
    std::vector<Area*> before, after;
    from.childrenByContents(graphicsCanvas(), before);
    to.childrenByContents(graphicsCanvas(), after);
    for (size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
        before[i]->ignoreOverlayable(after[i]->ignoreOverlayable());
        before[i]->placement(after[i]->placement());
        replaceChild(after[i], before[i]->parent()->removeChild(before[i]));
    }
}

void Layout::carryPlaces(Area& from, Area& to)
{
    for (const auto& area : to.children()) {
        const Area* before = area->name().empty() ? nullptr : from.childByName(area->name(), true);
        const bool same = before && before->contents() == area->contents();
        if (same && area->contents() && area->contents() != graphicsCanvas() &&
            area->contents() != splitView()) {
            area->placement(before->placement());
            area->point(before->point());
            area->extent(before->extent());
            area->collapsedPlacement(before->collapsedPlacement());
            area->collapsed(before->collapsed());
            area->visible(before->visible());
        }
        carryPlaces(from, *area);
    }
}

} // namespace Vu
