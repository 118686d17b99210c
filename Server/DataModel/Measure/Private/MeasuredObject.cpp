#include "Server/DataModel/Measure/Private/MeasuredObject.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/Private/MeasureTexts.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/Private/ProgressText.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <chrono>
#include <cmath>
#include <optional>

namespace Vs {

namespace {

using namespace std::chrono_literals;

/// Keeps the window alive while many bodies are measured, and takes the person's cancel.
class ManyBodies
{
public:
    explicit ManyBodies(size_t count) : m_count(count) {}

    /// Whether the next one is still wanted.
    bool goOn()
    {
        if (!m_shown && Clock::now() - m_begin > kQuiet)
            m_shown.emplace(ProgressText::measuring());
        const double done = static_cast<double>(m_done++) / static_cast<double>(m_count);
        return !Progress::cancelled() && (!m_shown || m_shown->update(done));
    }

private:
    using Clock = std::chrono::steady_clock;
    /// Most are measured before anybody would have read that they are.
    static constexpr auto kQuiet = 400ms;

    Progress::CancelScope m_cancellable;
    std::optional<ProgressScope> m_shown;
    Clock::time_point m_begin = Clock::now();
    size_t m_count, m_done = 0;
};

} // namespace

/// Of all bodies of an object: the volume or the area.
struct MeasuredObject::Sums
{
    double size = 0;
    GkPoint3d centre;
    /// Of volumes: whether there is one. Surfaces beside solids add none and do no harm.
    bool closed = false;
};

MeasureError::MeasureError(const std::wstring& message) : std::runtime_error(Strings::narrow(message)) {}

std::wstring MeasureError::message() const
{
    return Strings::widen(what());
}

MeasuredObject::MeasuredObject(const LogicalSelection& selection)
    : m_asset(*selection.asset()), m_path(selection.path())
{
    Status status;
    const Component* component = resolvePath(m_path, m_asset, status);
    if (!component)
        throw MeasureError(status.toString());
    collect(*component, placementOf(m_path, m_asset).value_or(GkMatrix3d()));
    if (m_occurrences.empty())
        throw MeasureError(MeasureTexts::noExactShape(name()));
}

void MeasuredObject::collect(const Component& component, const GkMatrix3d& placement)
{
    if (const auto* body = cast<ModelBody>(component.body.get()))
        m_occurrences.push_back({body, placement});
    for (const auto& child : component.children)
        collect(*child, placement * child->placement);
}

void MeasuredObject::refuse(NoAnswer why, ShapeKind kind, EMeasureType type) const
{
    throw MeasureError(MeasureTexts::reason(name(), why, kind, type));
}

ShapeKind MeasuredObject::wholeKind() const
{
    return m_path.leaf == ObjectPath::Leaf::Component ? ShapeKind::Component : ShapeKind::Body;
}

MeasuredObject::Sums MeasuredObject::sums(BodyMeasure what) const
{
    Sums sums;
    bool openSolid = false;
    ManyBodies bodies(m_occurrences.size());
    for (const Occurrence& each : m_occurrences) {
        if (!bodies.goOn())
            throw MeasureError(
                MeasureTexts::kernelFailed(name(), Strings::narrow(ProgressText::stoppedMeasuring(true))));
        Status status;
        auto properties = each.body->properties(what, status);
        if (!properties)
            throw MeasureError(status.toString());
        properties = placed(*properties, each.placement);
        const bool volume = what == BodyMeasure::Volume;
        const double size = volume ? properties->volume : properties->area;
        const GkPoint3d centre = volume ? properties->volumeCentre : properties->areaCentre;
        sums.size += size;
        if (sums.size > 0)
            sums.centre = sums.centre + (centre - sums.centre) * (size / sums.size);
        sums.closed |= properties->closed;
        openSolid |= properties->solids > 0 && !properties->closed;
    }
    sums.closed &= !openSolid;
    return sums;
}

MeasureResult MeasuredObject::measureBodies(EMeasureType type) const
{
    const bool position = type >= EMeasureType::PositionX && type <= EMeasureType::PositionZ;
    if (type != EMeasureType::Area && type != EMeasureType::Volume && !position)
        refuse(NoAnswer::WrongKind, wholeKind(), type);
    Sums sums = this->sums(type == EMeasureType::Area ? BodyMeasure::Area : BodyMeasure::Volume);
    if (type == EMeasureType::Volume && !sums.closed)
        refuse(NoAnswer::Open, wholeKind(), type);
    // A surface has its middle, too.
    if (position && !sums.closed)
        sums = this->sums(BodyMeasure::Area);
    if (!(sums.size > 0))
        refuse(NoAnswer::Degenerate, wholeKind(), type);
    return {sums.size, sums.centre, sums.centre, sums.centre};
}

template <class Work>
auto MeasuredObject::withKernel(Work&& work) const
{
    try {
        return work();
    } catch (const std::runtime_error& error) {
        throw MeasureError(MeasureTexts::kernelFailed(name(), error.what()));
    }
}

MeasureResult MeasuredObject::measurePart(EMeasureType type) const
{
    const Occurrence& occurrence = m_occurrences.front();
    const ShapeAnswer answer =
        withKernel([&] { return occurrence.body->measurePart(m_path.leaf, m_path.index, type); });
    if (answer.why != NoAnswer::None)
        refuse(answer.why, answer.kind, type);
    MeasureResult result = answer.result;
    const double scale = scaleOf(occurrence.placement);
    result.value *= std::pow(scale, type == EMeasureType::Volume ? 3 : type == EMeasureType::Area ? 2 : 1);
    for (GkPoint3d* point : {&result.point1, &result.point2, &result.point3})
        *point = occurrence.placement * *point;
    return result;
}

GkPoint3d MeasuredObject::position() const
{
    return measure(EMeasureType::PositionX).point1;
}

MeasureResult MeasuredObject::measure(EMeasureType type) const
{
    const bool y = type == EMeasureType::PositionY, z = type == EMeasureType::PositionZ;
    // All of the place comes at once, and is kept once.
    const EMeasureType asked = y || z ? EMeasureType::PositionX : type;
    MeasureResult result = m_path.isPartOfBody() ? measurePart(asked) : measureBodies(asked);
    if (asked == EMeasureType::PositionX)
        result.value = y ? result.point1.y : z ? result.point1.z : result.point1.x;
    return result;
}

std::vector<MeasuredShape> MeasuredObject::shapes() const
{
    const bool part = m_path.isPartOfBody();
    std::vector<MeasuredShape> shapes;
    for (const Occurrence& each : m_occurrences)
        shapes.push_back({each.body->entry(), part ? m_path.leaf : ObjectPath::Leaf::Body,
                          part ? m_path.index : 0, each.placement});
    return shapes;
}

MeasureResult MeasuredObject::measureWith(const MeasuredObject& other, EMeasureType type) const
{
    if (&other.m_asset != &m_asset)
        throw MeasureError(MeasureTexts::otherModel(other.name()));
    const bool angle = type == EMeasureType::Angle;
    for (const MeasuredObject* object : {this, &other})
        if (angle && object->m_path.isWhole())
            object->refuse(NoAnswer::WrongKind, object->wholeKind(), type);
    const ShapeAnswer answer = withKernel([&] {
        return m_occurrences.front().body->source()->withKernel([&](ModelKernel& kernel) {
            return kernel.measurePair(shapes(), other.shapes(),
                                      angle ? EMeasureType::Angle : EMeasureType::Distance);
        });
    });
    if (answer.why != NoAnswer::None)
        (answer.second ? other : *this).refuse(answer.why, answer.kind, type);
    return answer.result;
}

std::vector<uint32_t> MeasuredObject::loop() const
{
    if (m_path.leaf != ObjectPath::Leaf::Face)
        return {};
    return withKernel([&] {
        return m_occurrences.front().body->source()->withKernel(
            [&](ModelKernel& kernel) { return kernel.loop(shapes().front()); });
    });
}

} // namespace Vs
