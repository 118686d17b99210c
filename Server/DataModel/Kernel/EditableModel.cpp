#include "Server/DataModel/Kernel/EditableModel.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/BodyMesher.h"
#include "Server/DataModel/Kernel/EditLook.h"
#include "Server/DataModel/Kernel/EditPlaces.h"
#include "Server/DataModel/Kernel/EditSolids.h"
#include "Server/DataModel/Kernel/Guarded.h"
#include "Server/DataModel/Kernel/LongWork.h"
#include "Server/DataModel/Kernel/Measure.h"
#include "Server/DataModel/Kernel/MeasureParts.h"
#include "Server/DataModel/Kernel/ShortestDistance.h"
#include "Server/DataModel/Kernel/TriangleParts.h"
#include "Server/DataModel/Kernel/XdePaste.h"
#include "Server/DataModel/Model/ForkedChild.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <TopExp_Explorer.hxx>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace Vs::Kernel {

namespace {

/// Bodies of no more faces are measured at once.
constexpr int kQuickFaces = 20;

bool hasMoreFaces(const TopoDS_Shape& shape, int count)
{
    TopExp_Explorer faces(shape, TopAbs_FACE);
    for (; faces.More() && count > 0; faces.Next())
        --count;
    return faces.More();
}

/// Throws what is told of a measurement that was stopped.
void requireMeasured(const LongWorkEnd& end, const std::shared_ptr<void>& work)
{
    if (end.abandoned)
        keepForever(work);
    if (end.fault)
        throw std::runtime_error(
            Strings::narrow(ProgressText::stoppedMeasuring(*end.fault == EditFault::Cancelled)));
}

/// Texts for users are the main thread's.
struct MeshStopped : std::runtime_error
{
    explicit MeshStopped(EditFault cause) : std::runtime_error("the mesher was stopped"), fault(cause) {}
    EditFault fault;
};

std::shared_ptr<const BodyMesh> guardedMesh(const MakeMesh& make, const std::function<bool(double)>& goOn)
{
    // A child makes no threads, and nobody else handles its end.
    if (ForkedChild::is())
        return make({}, MeshThreads::All);
    struct Work
    {
        MakeMesh make;
        std::shared_ptr<const BodyMesh> mesh;
    };
    const auto meshing = std::make_shared<Work>(Work{make, nullptr});
    const LongWorkEnd end =
        runGuardedWork(goOn, [meshing](const Handle(Message_ProgressIndicator) & progress) {
            meshing->mesh = meshing->make(progress->Start(), MeshThreads::Own);
        });
    if (end.abandoned)
        keepForever(meshing);
    if (end.fault)
        throw MeshStopped(*end.fault);
    return meshing->mesh;
}

} // namespace

std::vector<std::string> EditableModel::edit(const ModelEdit& edit)
{
    return guarded([&] {
        if (std::optional<std::vector<std::string>> added = editSmall(edit))
            return *added;
        transaction().beginKernel();
        return std::visit(
            [&](const auto& each) {
                if constexpr (requires { apply(document(), each, m_made, m_log); })
                    return apply(document(), each, m_made, m_log);
                else if constexpr (requires { apply(document(), each, m_log); })
                    return apply(document(), each, m_log);
                else
                    return apply(document(), each);
            },
            edit);
    });
}

/// Makes the edit if it is a small change (XdeTransaction); returns nothing if it isn't.
std::optional<std::vector<std::string>> EditableModel::editSmall(const ModelEdit& edit)
{
    if (!transaction().isSmall())
        return std::nullopt;
    const auto note = [&](const TDF_Label& label) { transaction().note(label); };
    if (const auto* copy = std::get_if<CopyEdit>(&edit))
        return copiedAlone(document(), *copy, note);
    if (const auto* colour = std::get_if<ColourEdit>(&edit);
        colour && paintedAlone(document(), *colour, note))
        return std::vector<std::string>();
    const auto* move = std::get_if<MoveEdit>(&edit);
    const auto labels = move ? movedAlone(document(), *move) : std::nullopt;
    if (!labels)
        return std::nullopt;
    std::ranges::for_each(*labels, note);
    return apply(document(), *move);
}

std::vector<std::string> EditableModel::paste(ModelKernel& source, const std::vector<std::string>& components)
{
    auto* other = dynamic_cast<EditableModel*>(&source);
    if (!other)
        throw std::runtime_error("the other model is of another kernel");
    return guarded([&] {
        transaction().beginKernel();
        std::vector<std::string> added;
        const auto work = [&] { added = pasteOccurrences(document(), other->document(), components); };
        if (other == this)
            work();
        else
            other->transaction().withoutRemoved(work);
        return added;
    });
}

ShapeAnswer EditableModel::distance(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    if (!mayTakeLong(first, second))
        return XdeModel::distance(first, second);
    struct Work
    {
        TopoDS_Shape first, second;
        ShapeAnswer answer;
    };
    const auto measuring = std::make_shared<Work>(Work{first, second, {}});
    const LongWorkEnd end =
        runLongWork(ProgressText::measuring(), [measuring](const Handle(Message_ProgressIndicator)&) {
            measuring->answer = measureDistance(measuring->first, measuring->second);
        });
    requireMeasured(end, measuring);
    return measuring->answer;
}

BodyProperties EditableModel::measureBody(const TopoDS_Shape& body, BodyMeasure what)
{
    if (!Detail::onMainThread() || ForkedChild::is() || !hasMoreFaces(body, kQuickFaces))
        return XdeModel::measureBody(body, what);
    struct Work
    {
        TopoDS_Shape body;
        BodyProperties properties;
    };
    const auto measuring = std::make_shared<Work>(Work{body, {}});
    // Progress of the whole, of which this body is a part, is reported elsewhere.
    const auto goOn = [](double) {
        Progress::keepAlive();
        return !Progress::cancelled();
    };
    const LongWorkEnd end = runGuardedWork(goOn, [measuring, what](const Handle(Message_ProgressIndicator)&) {
        measuring->properties = measureShape(measuring->body, what);
    });
    requireMeasured(end, measuring);
    return measuring->properties;
}

std::shared_ptr<const BodyMesh> EditableModel::mesh(const std::string& entry,
                                                    const TranslatorRefinement& refinement,
                                                    const std::function<bool(double)>& goOn)
{
    try {
        return XdeModel::mesh(entry, refinement, goOn);
    } catch (const MeshStopped& stopped) {
        throw std::runtime_error(Strings::narrow(ProgressText::stoppedMeshing(stopped.fault)));
    }
}

MeshRunner* EditableModel::meshRunner() const
{
    return &guardedMesh;
}

std::shared_ptr<const PartSuccessors> EditableModel::successors(uint64_t before, uint64_t after)
{
    return guarded([&] { return m_log.between(before, after); });
}

std::unique_ptr<ModelChange> EditableModel::commit()
{
    std::unique_ptr<ModelChange> change = XdeModel::commit();
    guarded([&] { m_log.settle(true); });
    return change;
}

void EditableModel::abort()
{
    XdeModel::abort();
    guarded([&] { m_log.settle(false); });
}

} // namespace Vs::Kernel
