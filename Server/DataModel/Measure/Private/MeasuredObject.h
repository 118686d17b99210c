#pragma once

#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/Model/ShapeMeasure.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Selection.h"

#include <stdexcept>
#include <vector>

namespace Vs {

class ModelBody;
class Status;

/// Why something can't be measured, as a sentence for the user. Caught where the measurement starts.
class MeasureError : public std::runtime_error
{
public:
    explicit MeasureError(const std::wstring& message);
    std::wstring message() const;
};

/// An object as it is measured: the bodies that it consists of, or the one that it is a part of, with their
/// placements. Lives for one measurement. Its operations throw MeasureError.
class MeasuredObject
{
public:
    explicit MeasuredObject(const LogicalSelection& selection);

    const Asset& asset() const { return m_asset; }
    std::wstring name() const { return pathText(m_path, m_asset); }

    /// A value of one object, in the asset's coordinates.
    MeasureResult measure(EMeasureType type) const;
    GkPoint3d position() const;
    /// The value of two objects of one asset.
    MeasureResult measureWith(const MeasuredObject& other, EMeasureType type) const;
    std::vector<uint32_t> loop() const;

    [[noreturn]] void refuse(NoAnswer why, ShapeKind kind, EMeasureType type) const;

private:
    struct Occurrence
    {
        const ModelBody* body;
        GkMatrix3d placement;
    };
    struct Sums;

    void collect(const Component& component, const GkMatrix3d& placement);
    Sums sums(BodyMeasure what) const;
    MeasureResult measureBodies(EMeasureType type) const;
    MeasureResult measurePart(EMeasureType type) const;
    std::vector<MeasuredShape> shapes() const;
    ShapeKind wholeKind() const;
    template <class Work>
    auto withKernel(Work&& work) const;

    const Asset& m_asset;
    ObjectPath m_path;
    std::vector<Occurrence> m_occurrences;
};

} // namespace Vs
