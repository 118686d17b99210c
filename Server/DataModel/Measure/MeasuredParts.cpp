#include "Server/DataModel/Measure/MeasuredParts.h"

#include "Server/DataModel/Model/ModelBody.h"

#include <cmath>
#include <stdexcept>

namespace Vs {
namespace {

using Form = MeasuredParts::Form;
using Leaf = ObjectPath::Leaf;

/// Exact data of more bytes are not read only because something is selected: that takes seconds, and several
/// times their size in memory.
constexpr size_t kMostExactData = 64u << 20;

bool mayReadExact(const Body& body)
{
    const auto* model = cast<ModelBody>(&body);
    return model && (!model->source()->file || model->source()->file->kernelData().size() <= kMostExactData);
}

Form formOf(ShapeKind kind)
{
    switch (kind) {
    case ShapeKind::Plane:
        return Form::Plane;
    case ShapeKind::Cylinder:
        return Form::Cylinder;
    case ShapeKind::Cone:
        return Form::Cone;
    case ShapeKind::Sphere:
        return Form::Sphere;
    case ShapeKind::Line:
        return Form::Line;
    case ShapeKind::Circle:
        return Form::Circle;
    case ShapeKind::Curve:
        return Form::Curve;
    case ShapeKind::Face:
        return Form::FreeFace;
    default:
        return Form::None;
    }
}

/// A sum that is there only as long as each part has one.
class Sum
{
public:
    void add(std::optional<double> value, double factor)
    {
        m_all = m_all && value;
        m_sum += value.value_or(0) * factor;
        m_any = true;
    }
    std::optional<double> value() const { return m_any && m_all ? std::optional(m_sum) : std::nullopt; }

private:
    double m_sum = 0;
    bool m_all = true, m_any = false;
};

class Measuring
{
public:
    void add(const PartToMeasure& part)
    {
        if (part.leaf == Leaf::Body)
            addBody(part);
        else if (const auto* model = cast<ModelBody>(part.body.get()))
            addPart(part, *model);
    }
    /// The size of a simple body, which its triangles only nearly have.
    void addSize(const PartToMeasure& part)
    {
        std::wstring kind;
        double a = 0, b = 0, c = 0;
        if (part.leaf != Leaf::Body || part.count != 1 || !mayReadExact(*part.body) ||
            !part.body->smart(&kind, nullptr, &a, &b, &c))
            return;
        const double diameter = 2 * a;
        const GkVector3d size = kind == L"Box"        ? GkVector3d(a, b, c)
                                : kind == L"Cylinder" ? GkVector3d(diameter, diameter, b)
                                                      : GkVector3d(diameter, diameter, diameter);
        m_found.size = size * part.scale;
        if (kind != L"Box")
            m_found.diameter = diameter * part.scale;
    }
    MeasuredParts result() const
    {
        MeasuredParts found = m_found;
        found.volume = m_volume.value();
        found.area = m_area.value();
        found.length = m_length.value();
        return found;
    }

private:
    void addBody(const PartToMeasure& part)
    {
        const double square = part.scale * part.scale, count = static_cast<double>(part.count);
        if (mayReadExact(*part.body)) {
            Status status;
            const auto volume = part.body->properties(BodyMeasure::Volume, status);
            const auto area = part.body->properties(BodyMeasure::Area, status);
            // Surfaces beside solids add no volume.
            if (!volume || volume->solids > 0 || volume->closed)
                m_volume.add(volume && volume->closed ? std::optional(volume->volume) : std::nullopt,
                             square * part.scale * count);
            m_area.add(area ? std::optional(area->area) : std::nullopt, square * count);
            return;
        }
        m_found.isExact = false;
        const auto mesh = part.body->mesh();
        double volume = 0, area = 0;
        for (size_t i = 0; mesh && i + 2 < mesh->triangles.size(); i += 3) {
            const GkPoint3d a = at(*mesh, i), b = at(*mesh, i + 1), c = at(*mesh, i + 2);
            const GkVector3d across = (b - a).crossProduct(c - a);
            area += across.length() / 2;
            volume += (a - GkPoint3d()).dotProduct(across) / 6;
        }
        m_volume.add(volume, square * part.scale * count);
        m_area.add(area, square * count);
    }

    static GkPoint3d at(const BodyMesh& mesh, size_t corner)
    {
        const size_t place = 3 * static_cast<size_t>(mesh.triangles[corner]);
        return {mesh.positions[place], mesh.positions[place + 1], mesh.positions[place + 2]};
    }

    static std::optional<double> value(const PartToMeasure& part, const ModelBody& body, EMeasureType type)
    {
        const ShapeAnswer answer = body.measurePart(part.leaf, part.index, type);
        return answer.why == NoAnswer::None ? std::optional(answer.result.value) : std::nullopt;
    }

    void addPart(const PartToMeasure& part, const ModelBody& body)
    {
        if (part.leaf == Leaf::Vertex)
            return;
        if (!mayReadExact(body)) {
            m_found.isExact = false;
            addForm(Form::None, std::nullopt);
            m_area.add(std::nullopt, 1);
            return;
        }
        if (part.leaf == Leaf::Solid) {
            const double square = part.scale * part.scale;
            m_volume.add(value(part, body, EMeasureType::Volume), square * part.scale);
            m_area.add(value(part, body, EMeasureType::Area), square);
            return;
        }
        // Whatever the form, it has a radius or an answer that tells the form.
        const ShapeAnswer radius = body.measurePart(part.leaf, part.index, EMeasureType::Radius);
        const bool round = radius.why == NoAnswer::None;
        addForm(formOf(radius.kind),
                round ? std::optional(2 * part.scale * radius.result.value) : std::nullopt);
        if (part.leaf == Leaf::Face)
            m_area.add(value(part, body, EMeasureType::Area), part.scale * part.scale);
        else
            m_length.add(value(part, body, EMeasureType::Length), part.scale);
    }

    void addForm(Form form, std::optional<double> diameter)
    {
        // Turned places scale by a last digit.
        constexpr double kSame = 1e-9;
        if (!m_any) {
            m_found.form = form;
            m_found.diameter = diameter;
        } else {
            if (m_found.form != form)
                m_found.form = Form::Several;
            if (!diameter || !m_found.diameter ||
                std::abs(*diameter - *m_found.diameter) > kSame * *m_found.diameter)
                m_found.diameter.reset();
        }
        m_any = true;
    }

    MeasuredParts m_found;
    bool m_any = false;
    Sum m_volume, m_area, m_length;
};

} // namespace

std::optional<MeasuredParts> measureParts(const std::vector<PartToMeasure>& parts,
                                          const std::function<bool()>& goOn)
{
    Measuring measuring;
    try {
        for (const PartToMeasure& part : parts) {
            if (!goOn())
                return std::nullopt;
            measuring.add(part);
        }
        if (parts.size() == 1 && goOn())
            measuring.addSize(parts.front());
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
    return measuring.result();
}

} // namespace Vs
