// The lines of the subject area "Script" that list the faces, edges and vertices of a body: all at once,
// since a script asks for thousands of them.

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Measure/BodyParts.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Lines/ScriptLines.h"

#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

namespace Vu {

namespace {

using ScriptLines::json;
using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const char* kForms[] = {"plane",    "cylinder", "cone",   "sphere", "torus",
                                  "freeform", "line",     "circle", "curve",  "vertex"};

/// The body of the component that the line names, at its placement.
ScriptLines::Place bodyPlace(const TextCommandParameters& parameters)
{
    ScriptLines::Place place = ScriptLines::placeOf(ScriptLines::activeAsset(), parameters);
    if (!place.component->body)
        throw Vs::Exception(
            localizedFormat("ScriptNoBody", "\"%1%\" has no body of its own.", place.component->name));
    return place;
}

constexpr const wchar_t* kSuccessorHelp = L"<path> Face|Edge|Vertex <number> <shape> [/Id] Gives the path of "
                                          L"what became of a part of a body when that "
                                          L"got another shape";

template <class Ask>
auto asked(const ScriptLines::Place& place, Ask&& ask)
{
    try {
        return ask(*place.component->body);
    } catch (const std::runtime_error& error) {
        throw Vs::Exception(localizedFormat("ScriptNoParts", "The parts of \"%1%\" can't be listed: %2%",
                                            place.component->name, Vs::Strings::widen(error.what())));
    }
}

QJsonValue direction(const GkVector3d& own, const GkMatrix3d& matrix)
{
    if (own.isZeroLength())
        return {};
    return json((matrix * own).normal());
}

QJsonArray list(const std::vector<Vs::PartFacts>& parts, const GkMatrix3d& matrix)
{
    const double scale = Vs::scaleOf(matrix);
    QJsonArray all;
    for (const Vs::PartFacts& part : parts) {
        QJsonArray bounds;
        for (const uint32_t number : part.bounds)
            bounds.append(int(number));
        all.append(QJsonArray{
            kForms[static_cast<int>(part.form)], direction(part.direction, matrix), json(matrix * part.place),
            part.radius > 0 ? QJsonValue(part.radius * scale) : QJsonValue(), bounds, part.concave});
    }
    return all;
}

TextCommandResult parts(const TextCommandParameters& parameters)
{
    const ScriptLines::Place place = bodyPlace(parameters);
    const Vs::BodyParts found = asked(place, &Vs::bodyParts);
    return ScriptLines::answer(QJsonDocument(QJsonObject{{"shape", QString::number(found.revision)},
                                                         {"faces", list(found.faces, place.matrix)},
                                                         {"edges", list(found.edges, place.matrix)},
                                                         {"vertices", list(found.vertices, place.matrix)}}));
}

TextCommandResult extents(const TextCommandParameters& parameters)
{
    const bool ofFaces = parameters.parameters() == 2 && parameters[1] == L"Faces";
    if (!ofFaces && !(parameters.parameters() == 2 && parameters[1] == L"Edges"))
        throw Vs::Exception(localized("ScriptExtentsOfWhat", "Write Faces or Edges after the path."));
    const ScriptLines::Place place = bodyPlace(parameters);
    const auto leaf = ofFaces ? Vs::ObjectPath::Leaf::Face : Vs::ObjectPath::Leaf::Edge;
    const double scale = Vs::scaleOf(place.matrix);
    QJsonArray all;
    for (const Vs::PartExtent& extent :
         asked(place, [&](const Vs::Body& body) { return Vs::extentsOfParts(body, leaf); })) {
        const double size = extent.size * (ofFaces ? scale * scale : scale);
        all.append(std::isnan(size) ? QJsonArray() : QJsonArray{size, json(place.matrix * extent.centre)});
    }
    return ScriptLines::answer(QJsonDocument(all));
}

struct Leaf
{
    const wchar_t* word;
    Vs::ObjectPath::Leaf leaf;
};
constexpr Leaf kLeaves[] = {{L"Face", Vs::ObjectPath::Leaf::Face},
                            {L"Edge", Vs::ObjectPath::Leaf::Edge},
                            {L"Vertex", Vs::ObjectPath::Leaf::Vertex}};

TextCommandResult successor(const TextCommandParameters& parameters)
{
    const auto usage = [] {
        return Vs::Exception(L"Usage: Script.Successor " + std::wstring(kSuccessorHelp));
    };
    if (parameters.parameters() != 4)
        throw usage();
    const Vs::Asset& asset = ScriptLines::activeAsset();
    const ScriptLines::Place place = bodyPlace(parameters);
    const auto kind = std::find_if(std::begin(kLeaves), std::end(kLeaves),
                                   [&](const Leaf& leaf) { return parameters[1] == leaf.word; });
    const auto number = Vs::readNumber<uint32_t>(parameters[2]);
    const auto shape = Vs::readNumber<uint64_t>(parameters[3]);
    if (kind == std::end(kLeaves) || !number || *number == 0 || !shape)
        throw usage();
    const auto found = Vs::successorOf({place.component->id, kind->leaf, *number - 1}, *shape, asset);
    if (!found)
        throw Vs::Exception(localizedFormat("ScriptPartGone",
                                            "%1%%2% of \"%3%\" isn't there any more, since the body has "
                                            "changed: ask the body for its parts again.",
                                            parameters[1], *number, place.component->name));
    return {0, Vs::pathText(*found, asset)};
}

// clang-format off
constexpr ScriptLines::Row kParts   = {L"Parts",   L"<path> [/Id] Gives the faces, edges and vertices of a body in the model's coordinates, each with its form, its normal, axis or direction, a place, its radius, and the numbers of what bounds it", parts, "%s"};
constexpr ScriptLines::Row kExtents = {L"Extents", L"<path> Faces|Edges [/Id] Gives the area or length of each face or edge of a body, and its centre", extents, "%s%s"};
// clang-format on
constexpr ScriptLines::Row kSuccessor = {L"Successor", kSuccessorHelp, successor, "%s%s%d%s"};

ScriptLines::Line<kSuccessor> theSuccessor;
ScriptLines::Line<kParts> theParts;
ScriptLines::Line<kExtents> theExtents;

} // namespace

} // namespace Vu
