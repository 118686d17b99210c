#include "UI/Base/Window/PropertyTexts.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/LocalNumbers.h"
#include "UI/Base/Session/DocumentFacts.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Window/Told.h"

#include <QLocale>
#include <QStringList>

namespace Vu::PropertyTexts {
namespace {

using Form = Vs::MeasuredParts::Form;
using Vs::Units::Quantity;
using Vs::Units::Unit;

struct Counted
{
    const char *key, *alone; ///< The only thing that is selected.
    const char *oneKey, *one, *manyKey, *many;
};

// clang-format off
/// In the order of PropertyValues::Kind.
constexpr Counted kKinds[] = {
    {"KindAssembly", "Assembly", "KindOneAssembly", "1 assembly", "KindAssemblies", "%1% assemblies"},
    {"KindPart", "Part", "KindOnePart", "1 part", "KindParts",      "%1% parts"},
    {"KindBody", "Body", "KindOneBody", "1 body", "KindBodies",     "%1% bodies"},
    {"KindSolid", "Solid", "KindOneSolid", "1 solid", "KindSolids",     "%1% solids"},
    {"KindFace", "Face", "KindOneFace", "1 face", "KindFaces",      "%1% faces"},
    {"KindEdge", "Edge", "KindOneEdge", "1 edge", "KindEdges",      "%1% edges"},
    {"KindVertex", "Vertex", "KindOneVertex", "1 vertex", "KindVertices",   "%1% vertices"},
};
// clang-format on

QString counted(PropertyValues::Kind kind, size_t count)
{
    const Counted& texts = kKinds[kind];
    return count == 1 ? told(texts.oneKey, texts.one)
                      : QString::fromStdWString(localizedFormat(texts.manyKey, texts.many, count));
}

QString formText(Form form)
{
    switch (form) {
    case Form::Plane:
        return told("FormPlane", "plane");
    case Form::Cylinder:
        return told("FormCylinder", "cylinder");
    case Form::Cone:
        return told("FormCone", "cone");
    case Form::Sphere:
        return told("FormSphere", "sphere");
    case Form::FreeFace:
        return told("FormFree", "free-form");
    case Form::Line:
        return told("FormLine", "line");
    case Form::Circle:
        return told("FormCircle", "circle");
    case Form::Curve:
        return told("FormCurve", "curve");
    case Form::Several:
        return told("FormSeveral", "several forms");
    case Form::None:
        break;
    }
    return {};
}

QString shown(double value, Quantity quantity)
{
    return QString::fromStdWString(localNumbers(
        Vs::Units::toText(value, Unit::display(quantity), Vs::Units::UnitDisplaySettings::get())));
}

QString about(const QString& value, bool isExact)
{
    return isExact ? value
                   : QString::fromStdWString(localizedFormat("SizeAbout", "about %1%", value.toStdWString()));
}

size_t partsIn(const Vs::Component& component)
{
    size_t count = component.body ? 1 : 0;
    for (const auto& child : component.children)
        count += partsIn(*child);
    return count;
}

} // namespace

QString kind(const PropertyValues& values, Form form)
{
    QStringList all;
    for (int i = 0; i < PropertyValues::kKinds; ++i) {
        const auto kind = static_cast<PropertyValues::Kind>(i);
        if (const size_t count = values.counts[size_t(i)]; count > 0)
            all << (values.all() == 1 ? told(kKinds[i].key, kKinds[i].alone) : counted(kind, count));
    }
    if (values.counts[PropertyValues::Assembly] > 0 && values.all() == 1)
        all << counted(PropertyValues::Part, values.partsWithin);
    if (const QString shape = formText(form); !shape.isEmpty())
        all << shape;
    return all.join(QStringLiteral(", "));
}

QString size(const GkVector3d& size, bool isExact)
{
    const Unit unit = Unit::display(Quantity::Length);
    QStringList numbers;
    for (const double extent : {size.x, size.y, size.z})
        numbers << shown(extent, Quantity::Length);
    // The unit is written once, at the end.
    const QString symbol = QString::fromStdWString(unit.symbol());
    for (int i = 0; i < 2; ++i)
        if (numbers[i].endsWith(symbol))
            numbers[i] = numbers[i].chopped(symbol.size()).trimmed();
    return about(numbers.join(QStringLiteral(" \u00d7 ")), isExact);
}

QString length(double millimetres)
{
    return shown(millimetres, Quantity::Length);
}

QString area(double value, bool isExact)
{
    return about(shown(value, Quantity::Area), isExact);
}

QString volume(double value, bool isExact)
{
    return about(shown(value, Quantity::Volume), isExact);
}

QString different()
{
    return told("PropertyDiffers", "different");
}

std::vector<Line> document(const Vs::Document& document)
{
    std::vector<Line> lines;
    const auto add = [&](const QString& title, const std::wstring& value) {
        if (!value.empty())
            lines.push_back({title, QString::fromStdWString(value)});
    };
    const std::wstring& file = document.path().empty() ? document.importedFrom() : document.path();
    add(told("PropertyName", "Name"), document.displayName());
    add(told("PropertyFile", "File"), FilePlace::shown(file));
    size_t parts = 0;
    for (unsigned i = 0; i < document.assets(); ++i)
        parts += partsIn(*document.asset(i)->components());
    add(told("PropertyParts", "Parts"), QLocale().toString(qulonglong(parts)).toStdWString());
    if (document.assets() > 1)
        add(told("PropertyModels", "Models"), std::to_wstring(document.assets()));
    add(told("PropertyState", "State"), DocumentRemark::of(document));
    for (const DocumentFacts::Fact& fact : DocumentFacts::of(document))
        add(QString::fromStdWString(fact.title), fact.value);
    return lines;
}

} // namespace Vu::PropertyTexts
