#include "Server/DataModel/Kernel/Combine.h"

#include "Server/DataModel/Kernel/LongWork.h"
#include "Server/DataModel/Kernel/PartCount.h"
#include "Server/DataModel/Kernel/SolidTools.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <BRepAlgoAPI_Common.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepCheck_Analyzer.hxx>
#include <Message_ProgressIndicator.hxx>
#include <TopTools_ListOfShape.hxx>

#include <algorithm>
#include <cmath>
#include <memory>

namespace Vs::Kernel {

namespace {

using Kind = CombineEdit::Kind;

std::shared_ptr<BRepAlgoAPI_BooleanOperation> makeOperation(Kind kind)
{
    switch (kind) {
    case Kind::Join:
        return std::make_shared<BRepAlgoAPI_Fuse>();
    case Kind::Subtract:
        return std::make_shared<BRepAlgoAPI_Cut>();
    case Kind::Intersect:
        break;
    }
    return std::make_shared<BRepAlgoAPI_Common>();
}

/// Whether these can give a result of that volume, given that volumes are approximate.
bool isPossible(Kind kind, double volume, double target, const std::vector<double>& tools)
{
    double sum = target, largest = target, least = target;
    for (const double tool : tools) {
        sum += tool;
        largest = std::max(largest, tool);
        least = std::min(least, tool);
    }
    const double slack = 0.01 * sum;
    switch (kind) {
    case Kind::Join:
        return volume > largest - slack && volume < sum + slack;
    case Kind::Subtract:
        return volume > 0 && volume < target + slack;
    case Kind::Intersect:
        break;
    }
    return volume > 0 && volume < least + slack;
}

/// Whether nothing was taken away.
bool isWhole(const TopoDS_Shape& shape, const TopoDS_Shape& before)
{
    const double volume = roughVolume(before);
    return countOf(shape, TopAbs_FACE) == countOf(before, TopAbs_FACE) &&
           std::abs(roughVolume(shape) - volume) < 1e-9 * volume;
}

class Combination
{
public:
    Combination(Kind kind, const TopoDS_Shape& target, const std::vector<TopoDS_Shape>& tools)
        : m_kind(kind), m_target(target), m_tools(tools)
    {
    }

    /// Tries it at that tolerance on top of the shapes' own; false if there is no valid result.
    bool run(double tolerance, const Handle(Message_ProgressIndicator) & progress)
    {
        m_operation = makeOperation(m_kind);
        TopTools_ListOfShape arguments, tools;
        arguments.Append(m_target);
        for (const TopoDS_Shape& tool : m_tools)
            tools.Append(tool);
        m_operation->SetArguments(arguments);
        m_operation->SetTools(tools);
        m_operation->SetFuzzyValue(tolerance);
        m_operation->SetNonDestructive(true); // an undo brings the very same shapes back
        m_operation->Build(progress->Start());
        if (!m_operation->IsDone() || m_operation->HasErrors())
            return false;
        // Where bodies lay flush, their faces are one now.
        if (m_kind == Kind::Join)
            m_operation->SimplifyResult();
        m_result = solidsOf(m_operation->Shape());
        return m_result.IsNull() || isSound();
    }

    const TopoDS_Shape& result() const { return m_result; }
    Successors successors() const
    {
        return [operation = m_operation](const TopoDS_Shape& part) {
            std::vector<TopoDS_Shape> found;
            if (operation->IsDeleted(part))
                return found;
            for (const TopoDS_Shape& each : operation->Modified(part))
                found.push_back(each);
            return found.empty() ? std::vector{part} : found;
        };
    }

private:
    bool isSound() const
    {
        std::vector<double> volumes;
        for (const TopoDS_Shape& tool : m_tools)
            volumes.push_back(roughVolume(tool));
        return BRepCheck_Analyzer(m_result).IsValid() &&
               isPossible(m_kind, roughVolume(m_result), roughVolume(m_target), volumes);
    }

    Kind m_kind;
    const TopoDS_Shape& m_target;
    const std::vector<TopoDS_Shape>& m_tools;
    std::shared_ptr<BRepAlgoAPI_BooleanOperation> m_operation;
    TopoDS_Shape m_result;
};

MadeShape combinedAtOnce(Kind kind, const TopoDS_Shape& target, const std::vector<TopoDS_Shape>& tools,
                         const std::wstring& name)
{
    std::shared_ptr<Combination> combination;
    bool sound = false;
    const LongWorkEnd end =
        runLongWork(ProgressText::changing(name), [&](const Handle(Message_ProgressIndicator) & progress) {
            const auto made = std::make_shared<Combination>(kind, target, tools);
            // Surfaces that should lie on each other, and don't quite, meet at a tolerance.
            for (const double tolerance : {0.0, 1e-5, 1e-3})
                sound = sound || made->run(tolerance, progress);
            combination = made;
        });
    if (end.fault)
        throw EditError(*end.fault, name);
    if (!sound)
        throw EditError(EditFault::Invalid, name);
    const TopoDS_Shape& result = combination->result();
    if (result.IsNull())
        throw EditError(kind == Kind::Subtract ? EditFault::NothingLeft : EditFault::Apart, name);
    if (kind == Kind::Subtract && isWhole(result, target))
        throw EditError(EditFault::Apart, name);
    return {result, combination->successors()};
}

Successors followed(const Successors& first, const Successors& second)
{
    return [first, second](const TopoDS_Shape& part) {
        std::vector<TopoDS_Shape> found;
        for (const TopoDS_Shape& each : first(part))
            for (const TopoDS_Shape& later : second(each))
                found.push_back(later);
        return found;
    };
}

} // namespace

MadeShape combined(Kind kind, const TopoDS_Shape& target, const std::vector<TopoDS_Shape>& tools,
                   const std::wstring& name)
{
    if (kind != Kind::Intersect)
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the function that is handed out owns it.
        return combinedAtOnce(kind, target, tools, name);
    // The kernel counts what is in any of the tools as common, so they are applied one by one.
    MadeShape made{target, [](const TopoDS_Shape& same) { return std::vector{same}; }};
    for (const TopoDS_Shape& tool : tools) {
        const MadeShape next = combinedAtOnce(kind, made.shape, {tool}, name);
        made = {next.shape, followed(made.successors, next.successors)};
    }
    return made;
}

} // namespace Vs::Kernel
