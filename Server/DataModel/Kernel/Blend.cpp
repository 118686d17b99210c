#include "Server/DataModel/Kernel/Blend.h"

#include "Server/DataModel/Kernel/LongWork.h"
#include "Server/DataModel/Kernel/PartCount.h"
#include "Server/DataModel/Kernel/SolidTools.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <BRepCheck_Analyzer.hxx>
#include <BRepFilletAPI_MakeChamfer.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS.hxx>

#include <cmath>
#include <memory>

namespace Vs::Kernel {

namespace {

// The kernel silently skips edges at which the faces meet smoothly.
std::shared_ptr<BRepFilletAPI_LocalOperation> makeOperation(BlendEdit::Kind kind, const TopoDS_Shape& body,
                                                            const std::vector<TopoDS_Shape>& edges,
                                                            double size, const std::wstring& name)
{
    std::shared_ptr<BRepFilletAPI_LocalOperation> operation;
    const auto add = [&](auto made) {
        for (const TopoDS_Shape& edge : edges)
            made->Add(size, TopoDS::Edge(edge));
        operation = made;
    };
    if (kind == BlendEdit::Kind::Fillet)
        add(std::make_shared<BRepFilletAPI_MakeFillet>(body));
    else
        add(std::make_shared<BRepFilletAPI_MakeChamfer>(body));
    for (const TopoDS_Shape& edge : edges)
        if (operation->Contour(TopoDS::Edge(edge)) == 0)
            throw EditError(EditFault::SmoothEdge, name);
    return operation;
}

/// Neither turned inside out nor fallen to pieces.
bool isSound(const TopoDS_Shape& result, const TopoDS_Shape& before)
{
    if (result.IsNull() || countOf(result, TopAbs_SOLID) != countOf(before, TopAbs_SOLID))
        return false;
    const double volume = roughVolume(result), old = roughVolume(before);
    return BRepCheck_Analyzer(result).IsValid() && volume >= 0 && volume < 2 * std::abs(old) + 1e-9;
}

Successors successorsIn(const std::shared_ptr<BRepFilletAPI_LocalOperation>& operation)
{
    return [operation](const TopoDS_Shape& part) {
        std::vector<TopoDS_Shape> found;
        if (operation->IsDeleted(part))
            return found;
        for (const TopoDS_Shape& each : operation->Modified(part))
            found.push_back(each);
        return found.empty() ? std::vector{part} : found;
    };
}

} // namespace

MadeShape blended(BlendEdit::Kind kind, const TopoDS_Shape& body, const std::vector<TopoDS_Shape>& edges,
                  double size, const std::wstring& name)
{
    std::shared_ptr<BRepFilletAPI_LocalOperation> operation;
    TopoDS_Shape result;
    bool sound = false;
    const LongWorkEnd end =
        runLongWork(ProgressText::changing(name), [&](const Handle(Message_ProgressIndicator)&) {
            try {
                const auto made = makeOperation(kind, body, edges, size, name);
                made->Build();
                if (!made->IsDone())
                    return;
                // The kernel wraps a single solid in a compound.
                result = body.ShapeType() == TopAbs_SOLID ? solidsOf(made->Shape()) : made->Shape();
                sound = isSound(result, body);
                operation = made;
            } catch (const Standard_Failure&) {
                // It throws, as a rule, where there is no room.
            }
        });
    if (end.fault)
        throw EditError(*end.fault, name);
    if (!sound)
        throw EditError(EditFault::TooLarge, name);
    return {result, successorsIn(operation)};
}

} // namespace Vs::Kernel
