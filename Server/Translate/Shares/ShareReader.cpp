#include "Server/Translate/Shares/ShareReader.h"

#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/Translate/Shares/SmoothEdges.h"
#include "Server/Translate/StepSession.h"

#include <BRep_Builder.hxx>
#include <Message_ProgressIndicator.hxx>
#include <STEPControl_ActorRead.hxx>
#include <Standard_Failure.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_Representation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Vs::Translate::Shares {

namespace {

/// How the work of a share is divided, as in an undivided reading.
constexpr double kParsed = 0.35, kTransferred = 0.65;

class Progress : public Message_ProgressIndicator
{
public:
    explicit Progress(std::function<void(double)> report) : m_report(std::move(report)) {}
    void Show(const Message_ProgressScope&, const Standard_Boolean) override { m_report(GetPosition()); }

private:
    std::function<void(double)> m_report;
};

std::function<void(double)> part(const std::function<void(double)>& report, double from, double to)
{
    return [=](double fraction) { report(from + (to - from) * fraction); };
}

/// The shape that the kernel makes from a representation with these items.
TopoDS_Shape bodyOf(const std::vector<TopoDS_Shape>& shapes)
{
    if (shapes.size() == 1)
        return shapes.front();
    const BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (const TopoDS_Shape& shape : shapes)
        builder.Add(all, shape);
    return all;
}

/// A share that has been parsed, while it is transferred.
class Transfer
{
public:
    Transfer(const ShareJob& job, StepSession& session) : m_job(job)
    {
        const Handle(XSControl_WorkSession) work = session.Reader().WS();
        const Handle(XSControl_TransferReader) transfer = work->TransferReader();
        transfer->SetActor(m_actor);
        transfer->BeginTransfer();
        m_process = transfer->TransientProcess();
        m_process->SetGraph(work->HGraph());
        const auto model = Handle(StepData_StepModel)::DownCast(work->Model());
        std::unordered_set<uint32_t> needed;
        for (const ShareJob::Part& part : job.parts) {
            needed.insert(part.wanted.begin(), part.wanted.end());
            for (const SharedRepresentation& one : part.representations) {
                needed.insert(one.number);
                needed.insert(one.items.begin(), one.items.end());
            }
        }
        for (int i = 1; i <= model->NbEntities(); ++i)
            if (const auto number = static_cast<uint32_t>(model->IdentLabel(model->Value(i)));
                needed.contains(number))
                m_entities[number] = model->Value(i);
    }

    void transferItems(const Message_ProgressRange& range)
    {
        Message_ProgressScope scope(range, "Items", double(m_job.parts.size()));
        for (const ShareJob::Part& part : m_job.parts) {
            Message_ProgressScope inPart(scope.Next(), "Items", double(part.representations.size()));
            for (const SharedRepresentation& one : part.representations)
                transferItems(one, inPart.Next());
        }
    }

    ShareResult result(const ShareJob::Part& part) const
    {
        ShareResult result;
        std::unordered_set<uint32_t> taken;
        for (const SharedRepresentation& one : part.representations) {
            std::vector<TopoDS_Shape> shapes;
            for (const uint32_t item : one.items) {
                const TopoDS_Shape shape = shapeOf(item);
                if (taken.insert(item).second)
                    result.shapes.emplace_back(item, shape);
                if (!shape.IsNull())
                    shapes.push_back(shape);
            }
            if (one.isWhole && !shapes.empty())
                result.bodies.push_back(bodyOf(shapes));
        }
        for (const uint32_t number : part.wanted)
            if (const TopoDS_Shape shape = shapeOf(number); !shape.IsNull() && taken.insert(number).second)
                result.shapes.emplace_back(number, shape);
        return result;
    }

    /// As the kernel does at the end of a transfer, which would take the process that puts everything
    /// together a fifth of its time.
    void markSmoothEdges(const ShareJob::Part& part) const
    {
        for (const SharedRepresentation& one : part.representations)
            for (const uint32_t item : one.items)
                if (const TopoDS_Shape shape = shapeOf(item); !shape.IsNull())
                    Shares::markSmoothEdges(shape);
    }

private:
    void transferItems(const SharedRepresentation& one, const Message_ProgressRange& range)
    {
        const auto representation = Handle(StepRepr_Representation)::DownCast(entity(one.number));
        if (representation.IsNull())
            return;
        m_actor->PrepareUnits(representation, m_process);
        Message_ProgressScope items(range, "Items", double(one.items.size()));
        for (const uint32_t number : one.items) {
            const Message_ProgressRange next = items.Next();
            if (const Handle(Standard_Transient) item = entity(number);
                !item.IsNull() && !m_process->IsBound(item))
                m_actor->TransferShape(item, m_process, true, false, next);
        }
    }

    TopoDS_Shape shapeOf(uint32_t number) const
    {
        const Handle(Standard_Transient) one = entity(number);
        const Handle(Transfer_Binder) binder = one.IsNull() ? nullptr : m_process->Find(one);
        return binder.IsNull() ? TopoDS_Shape() : TransferBRep::ShapeResult(binder);
    }

    Handle(Standard_Transient) entity(uint32_t number) const
    {
        const auto found = m_entities.find(number);
        return found == m_entities.end() ? nullptr : found->second;
    }

    const ShareJob& m_job;
    Handle(STEPControl_ActorRead) m_actor = new STEPControl_ActorRead;
    Handle(Transfer_TransientProcess) m_process;
    std::unordered_map<uint32_t, Handle(Standard_Transient)> m_entities;
};

/// A body that can't be meshed is left to the process that puts everything together, which reports it.
void meshBodies(std::vector<ShareResult>& results, Kernel::MeshThreads threads,
                const Message_ProgressRange& range)
{
    Message_ProgressScope scope(range, "Bodies", double(results.size()));
    for (ShareResult& result : results) {
        Message_ProgressScope inOne(scope.Next(), "Bodies", std::max(1.0, double(result.bodies.size())));
        std::erase_if(result.bodies, [&](const TopoDS_Shape& body) {
            try {
                Kernel::meshShape(body, {}, inOne.Next(), threads);
                return false;
            } catch (const Standard_Failure&) {
                return true;
            }
        });
    }
}

} // namespace

void warmUp()
{
    StepSession::make()->load(
        "empty",
        "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
        "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\n"
        "DATA;\n#1=DIRECTION('',(0.,0.,1.));\nENDSEC;\nEND-ISO-10303-21;\n",
        [](double) {});
}

std::vector<ShareResult> readShare(const ShareJob& job, bool mustBeSound,
                                   const std::function<void(double)>& report)
{
    const std::shared_ptr<StepSession> session = StepSession::make();
    if (!session->load("share", job.text, part(report, 0, kParsed)) ||
        (mustBeSound && session->lacksAnything()))
        throw Unsound("is damaged");
    Transfer transfer(job, *session);
    const Handle(Progress) transferring = new Progress(part(report, kParsed, kTransferred));
    transfer.transferItems(transferring->Start());
    std::vector<ShareResult> results;
    for (const ShareJob::Part& one : job.parts)
        results.push_back(transfer.result(one));
    const Handle(Progress) meshing = new Progress(part(report, kTransferred, 1));
    meshBodies(results, job.isAlone ? Kernel::MeshThreads::All : Kernel::MeshThreads::Own, meshing->Start());
    for (const ShareJob::Part& one : job.parts)
        transfer.markSmoothEdges(one);
    return results;
}

} // namespace Vs::Translate::Shares
