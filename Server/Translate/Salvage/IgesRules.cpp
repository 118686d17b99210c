#include "Server/Translate/Salvage/IgesRules.h"

#include "Server/Translate/Salvage/IgesValues.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace Vs::Translate::Salvage {

namespace {

using Role = IgesRole;
using Values = IgesValues;

constexpr int kMostMembers = IgesValues::kMostMembers, kHighestDegree = 25;

// The parameters as version 5.3 of the format has them, as far as the kernel reads them.

void circularArc(Values& values)
{
    values.number();
    double points[6] = {};
    for (double& each : points)
        each = values.number();
    const double radius = std::hypot(points[2] - points[0], points[3] - points[1]);
    const double other = std::hypot(points[4] - points[0], points[5] - points[1]);
    values.require(radius > 0 && std::abs(radius - other) < 0.1 * radius);
}

void compositeCurve(Values& values)
{
    for (int n = values.count(); n > 0 && values.isSound(); --n)
        values.link(rolesOf({Role::Curve, Role::Point}));
}

void copiousData(Values& values)
{
    const int kind = values.integer(1, 3), points = values.count();
    values.numbers(kind == 1 ? 1 + 2 * size_t(points) : 3 * size_t(kind - 1) * size_t(points));
}

void plane(Values& values)
{
    double normal[3] = {};
    for (double& each : normal)
        each = values.number();
    values.require(std::hypot(normal[0], normal[1], normal[2]) > 1e-6);
    values.number();
    values.link(rolesOf({Role::Curve}), true);
    values.optional(4);
}

void splineCurve(Values& values)
{
    values.integer(1, 6);
    values.integer(0, 3);
    values.integer(2, 3);
    const size_t segments = size_t(values.count());
    values.knots(segments + 1, 1);
    values.numbers(12 * segments + 12);
}

void splineSurface(Values& values)
{
    values.integer(1, 6);
    values.integer(0, 1);
    const size_t across = size_t(values.count()), along = size_t(values.count());
    values.knots(across + 1, 1);
    values.knots(along + 1, 1);
    values.numbers(std::max(48 * across * along, std::min(values.left(), 48 * (across + 1) * (along + 1))));
}

void ruledSurface(Values& values)
{
    values.link(Role::Curve);
    values.link(Role::Curve);
    values.flags(2);
}

void surfaceOfRevolution(Values& values)
{
    values.link(Role::Line);
    values.link(Role::Curve);
    const double begin = values.number();
    values.require(values.number() != begin);
}

void tabulatedCylinder(Values& values)
{
    values.link(Role::Curve);
    values.numbers(3);
}

// Rows of the same length, at right angles; a mirror is one, too.
void matrix(Values& values)
{
    constexpr double kTolerance = 0.01;
    double rows[3][3] = {};
    for (auto& row : rows) {
        for (double& each : row)
            each = values.number();
        values.number();
    }
    const auto product = [&](int a, int b) {
        return rows[a][0] * rows[b][0] + rows[a][1] * rows[b][1] + rows[a][2] * rows[b][2];
    };
    const double square = product(0, 0);
    values.require(square > 1e-12);
    for (int i = 0; i < 3; ++i) {
        values.require(std::abs(product(i, i) - square) < kTolerance * square);
        values.require(std::abs(product(i, (i + 1) % 3)) < kTolerance * square);
    }
}

void bSplineCurve(Values& values)
{
    const int last = values.count(), degree = values.integer(1, kHighestDegree);
    values.require(last >= degree);
    values.flags(4);
    values.knots(size_t(last) + size_t(degree) + 2, degree + 1);
    for (int i = 0; i <= last && values.isSound(); ++i)
        values.positive();
    values.numbers(3 * (size_t(last) + 1));
    values.numbers(2);
    values.optional(3);
}

void bSplineSurface(Values& values)
{
    const int across = values.count(), along = values.count();
    const int degreeAcross = values.integer(1, kHighestDegree),
              degreeAlong = values.integer(1, kHighestDegree);
    values.require(across >= degreeAcross && along >= degreeAlong && across < kMostMembers / (along + 1));
    values.flags(5);
    values.knots(size_t(across) + size_t(degreeAcross) + 2, degreeAcross + 1);
    values.knots(size_t(along) + size_t(degreeAlong) + 2, degreeAlong + 1);
    const size_t points = values.isSound() ? (size_t(across) + 1) * (size_t(along) + 1) : 0;
    for (size_t i = 0; i < points && values.isSound(); ++i)
        values.positive();
    values.numbers(3 * points);
    values.numbers(4);
}

void offsetCurve(Values& values)
{
    values.link(Role::Curve);
    const int kind = values.integer(1, 3);
    values.link(Role::Curve, kind != 3);
    values.integer(0, 3, true);
    values.integer(0, 2, true);
    values.numbers(4);
    values.direction();
    values.numbers(2);
}

void offsetSurface(Values& values)
{
    values.numbers(4);
    values.link(Role::Surface);
}

void boundary(Values& values)
{
    values.integer(0, 1);
    values.integer(0, 3, true);
    values.link(Role::Surface);
    for (int n = values.count(); n > 0 && values.isSound(); --n) {
        values.link(Role::Curve);
        values.integer(1, 2);
        for (int curves = values.integer(0, kMostMembers, true); curves > 0 && values.isSound(); --curves)
            values.link(Role::Curve);
    }
}

void curveOnSurface(Values& values)
{
    values.integer(0, 3, true);
    values.link(Role::Surface);
    const IgesLink* const flat = values.link(Role::Curve, true);
    if (IgesLink* const spatial = values.link(Role::Curve, flat != nullptr); spatial && flat)
        (spatial - 1)->isAlternative = spatial->isAlternative = true;
    values.integer(0, 3, true);
}

void boundedSurface(Values& values)
{
    values.integer(0, 1);
    values.link(Role::Surface);
    for (int n = values.count(); n > 0 && values.isSound(); --n)
        values.link(Role::Boundary);
}

void trimmedSurface(Values& values)
{
    values.link(Role::Surface);
    const int isTrimmed = values.integer(0, 1, true), inner = values.integer(0, kMostMembers, true);
    values.link(Role::CurveOnSurface, isTrimmed == 0);
    for (int i = 0; i < inner && values.isSound(); ++i)
        values.link(Role::CurveOnSurface);
}

void solid(Values& values)
{
    const auto shell = [&] {
        if (IgesLink* const link = values.link(Role::Shell))
            link->isWhole = true;
        values.flags(1);
    };
    shell();
    for (int voids = values.integer(0, kMostMembers, true); voids > 0 && values.isSound(); --voids)
        shell();
}

/// A surface by its place and its axis; `sizes` numbers follow.
void placedSurface(Values& values, int sizes, bool hasAxis)
{
    values.link(Role::Point);
    if (hasAxis)
        values.link(Role::Direction);
    for (int i = 0; i < sizes; ++i)
        values.positive();
    if (!hasAxis && values.form() == 1)
        values.link(Role::Direction);
    if (values.form() == 1)
        values.link(Role::Direction);
}

void figure(Values& values)
{
    values.integer(0, kMostMembers, true);
    values.any();
    values.list(rolesOf({Role::Face, Role::Shell, Role::Solid, Role::Surface, Role::Curve, Role::Point,
                         Role::Placement, Role::Group}));
}

void group(Values& values)
{
    values.list(rolesOf({Role::Face, Role::Shell, Role::Solid, Role::Surface, Role::Curve, Role::Point,
                         Role::Placement, Role::Group, Role::ShellFace}));
}

void placement(Values& values)
{
    values.link(Role::Figure);
    values.numbers(3);
    if (values.left() > 0)
        values.positive();
}

void property(Values& values)
{
    for (int n = values.count(); n > 0 && values.isSound(); --n)
        values.any();
}

void vertices(Values& values)
{
    const int count = values.count();
    values.numbers(3 * size_t(count));
    values.members(count);
}

void edges(Values& values)
{
    const int count = values.count();
    for (int i = 0; i < count && values.isSound(); ++i) {
        values.link(Role::Curve);
        for (int end = 0; end < 2; ++end) {
            IgesLink* const link = values.link(Role::Vertices);
            const int index = values.count();
            if (link)
                link->index = index;
        }
    }
    values.members(count);
}

void loop(Values& values)
{
    for (int n = values.count(); n > 0 && values.isSound(); --n) {
        const int isVertex = values.integer(0, 1, true);
        IgesLink* const link = values.link(isVertex ? Role::Vertices : Role::Edges);
        const int index = values.count();
        if (link)
            link->index = index;
        values.flags(1);
        for (int curves = values.integer(0, kMostMembers, true); curves > 0 && values.isSound(); --curves) {
            values.flags(1);
            values.link(Role::Curve);
        }
    }
}

void shellFace(Values& values)
{
    values.link(Role::Surface);
    const int loops = values.count();
    values.flags(1);
    for (int i = 0; i < loops && values.isSound(); ++i)
        values.link(Role::Loop);
}

void shell(Values& values)
{
    values.list(rolesOf({Role::ShellFace}), 2, [&] { values.flags(1); });
}

struct Rule
{
    int type;
    IgesRoles roles;
    void (*check)(Values&);
};

const Rule kRules[] = {
    {100, rolesOf({Role::Curve}), circularArc},
    {102, rolesOf({Role::Curve}), compositeCurve},
    {104, rolesOf({Role::Curve}), [](Values& values) { values.numbers(11); }},
    {106, rolesOf({Role::Curve}), copiousData},
    {108, rolesOf({Role::Surface}), plane},
    {110, rolesOf({Role::Curve, Role::Line}), [](Values& values) { values.numbers(6); }},
    {112, rolesOf({Role::Curve}), splineCurve},
    {114, rolesOf({Role::Surface}), splineSurface},
    {116, rolesOf({Role::Point}),
     [](Values& values) {
         values.numbers(3);
         values.optional(1);
     }},
    {118, rolesOf({Role::Surface}), ruledSurface},
    {120, rolesOf({Role::Surface}), surfaceOfRevolution},
    {122, rolesOf({Role::Surface}), tabulatedCylinder},
    {123, rolesOf({Role::Direction}), [](Values& values) { values.direction(); }},
    {124, rolesOf({Role::Matrix}), matrix},
    {126, rolesOf({Role::Curve}), bSplineCurve},
    {128, rolesOf({Role::Surface}), bSplineSurface},
    {130, rolesOf({Role::Curve}), offsetCurve},
    {140, rolesOf({Role::Surface}), offsetSurface},
    {141, rolesOf({Role::Boundary}), boundary},
    {142, rolesOf({Role::CurveOnSurface}), curveOnSurface},
    {143, rolesOf({Role::Face}), boundedSurface},
    {144, rolesOf({Role::Face}), trimmedSurface},
    {186, rolesOf({Role::Solid}), solid},
    {190, rolesOf({Role::Surface}), [](Values& values) { placedSurface(values, 0, true); }},
    {192, rolesOf({Role::Surface}), [](Values& values) { placedSurface(values, 1, true); }},
    {194, rolesOf({Role::Surface}), [](Values& values) { placedSurface(values, 2, true); }},
    {196, rolesOf({Role::Surface}), [](Values& values) { placedSurface(values, 1, false); }},
    {198, rolesOf({Role::Surface}), [](Values& values) { placedSurface(values, 2, true); }},
    {308, rolesOf({Role::Figure}), figure},
    {314, rolesOf({Role::Colour}),
     [](Values& values) {
         values.numbers(3);
         values.optional(1);
     }},
    {402, rolesOf({Role::Group}), group},
    {406, rolesOf({Role::Property}), property},
    {408, rolesOf({Role::Placement}), placement},
    {502, rolesOf({Role::Vertices}), vertices},
    {504, rolesOf({Role::Edges}), edges},
    {508, rolesOf({Role::Loop}), loop},
    {510, rolesOf({Role::ShellFace}), shellFace},
    {514, rolesOf({Role::Shell}), shell},
};

const Rule* ruleOf(int type)
{
    const auto rule = std::ranges::lower_bound(kRules, type, {}, &Rule::type);
    return rule != std::end(kRules) && rule->type == type ? rule : nullptr;
}

} // namespace

bool isKnown(const IgesRecord& record)
{
    const auto isForm = [&](std::initializer_list<int> forms) {
        return std::ranges::find(forms, record.directory.form.value_or(0)) != forms.end();
    };
    switch (record.type) {
    case 106: // The others are drawings of measures.
        return isForm({0, 1, 2, 3, 11, 12, 13, 63});
    case 402:
        return isForm({1, 7, 14, 15});
    case 406:
        return isForm({1, 3, 15});
    default:
        return ruleOf(record.type) != nullptr;
    }
}

bool isFaceType(int type)
{
    return type == 143 || type == 144 || type == 510;
}

IgesFindings checkEntity(const IgesRecord& record)
{
    IgesFindings findings;
    if (!isKnown(record))
        return findings;
    const Rule* const rule = ruleOf(record.type);
    findings.roles = rule->roles;
    if (record.type == 406 && record.directory.form == 1)
        findings.roles = rolesOf({Role::Levels, Role::Property});
    Values values(record, findings);
    rule->check(values);
    findings.size = values.taken();
    const bool isWhole = record.isWhole || findings.list.each > 0;
    findings.isSound = values.isSound() && isWhole;
    if (findings.isSound)
        findings.properties = values.properties();
    return findings;
}

} // namespace Vs::Translate::Salvage
