#include "Server/Translate/Shares/BoundShares.h"

#include "Server/Translate/StepActor.h"

#include <Standard_Failure.hxx>
#include <StepData_StepModel.hxx>
#include <TopExp_Explorer.hxx>
#include <TransferBRep_ShapeBinder.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <stdexcept>
#include <unordered_map>

namespace Vs::Translate::Shares {

namespace {

/// The bodies that came with their triangles, recognised by their faces.
class MeshedBodies
{
public:
    void add(const TopoDS_Shape& body)
    {
        size_t faces = 0;
        for (TopExp_Explorer each(body, TopAbs_FACE); each.More(); each.Next(), ++faces)
            m_bodies[each.Current().TShape().get()] = m_faces.size();
        m_faces.push_back(faces);
    }

    /// Not if it also has faces of others, or only some of one: they were meshed as finely as that body
    /// required.
    bool contains(const TopoDS_Shape& shape) const
    {
        size_t faces = 0, body = 0;
        for (TopExp_Explorer each(shape, TopAbs_FACE); each.More(); each.Next(), ++faces) {
            const auto found = m_bodies.find(each.Current().TShape().get());
            if (found == m_bodies.end() || (faces > 0 && found->second != body))
                return false;
            body = found->second;
        }
        return faces > 0 && faces == m_faces[body];
    }

private:
    std::unordered_map<const TopoDS_TShape*, size_t> m_bodies;
    std::vector<size_t> m_faces;
};

/// What the structure knows only by name, keyed by the numbers in the file.
class Binding
{
public:
    explicit Binding(StepSession& session)
    {
        const Handle(XSControl_WorkSession) work = session.Reader().WS();
        const Handle(XSControl_TransferReader) transfer = work->TransferReader();
        transfer->SetActor(new StepActor);
        transfer->BeginTransfer();
        m_process = transfer->TransientProcess();
        const auto model = Handle(StepData_StepModel)::DownCast(work->Model());
        for (int i = 1; i <= model->NbEntities(); ++i)
            m_entities[model->IdentLabel(model->Value(i))] = model->Value(i);
    }

    void bind(uint32_t number, const TopoDS_Shape& shape)
    {
        if (const auto found = m_entities.find(static_cast<int>(number)); found != m_entities.end())
            m_process->Bind(found->second, new TransferBRep_ShapeBinder(shape));
    }

private:
    Handle(Transfer_TransientProcess) m_process;
    std::unordered_map<int, Handle(Standard_Transient)> m_entities;
};

} // namespace

bool readByShares(ShareReaders& readers, StepSession& session, const std::string& path, Reading& reading,
                  Reporter& reporter)
{
    constexpr double kLoaded = 0.05, kRead = 0.6;
    reporter.stage("reading the file", 0, kLoaded);
    if (!readers.waitForPlan() ||
        !session.load(path, readers.structure(), [&](double fraction) { reporter.progress(fraction); }) ||
        session.lacksAnything())
        return false;
    reporter.stage("reading the parts", kLoaded, kRead);
    Binding binding(session);
    const auto meshed = std::make_shared<MeshedBodies>();
    std::vector<std::string> warnings;
    try {
        std::vector<ShareResult> results;
        while (readers.next(results, [&](double fraction) { reporter.progress(fraction); }))
            for (const ShareResult& result : results) {
                for (const auto& [number, shape] : result.shapes)
                    binding.bind(number, shape);
                for (const TopoDS_Shape& body : result.bodies)
                    meshed->add(body);
                warnings.insert(warnings.end(), result.warnings.begin(), result.warnings.end());
            }
    } catch (const Standard_Failure&) {
        return false;
    } catch (const std::runtime_error&) {
        return false;
    }
    if (!readers.isComplete())
        return false;
    if (!warnings.empty()) {
        reporter.dependsOn({});
        reading.warnings.emplace_back("is damaged, and was read without what is unsound in it");
        reading.warnings.insert(reading.warnings.end(), warnings.begin(), warnings.end());
    }
    reading.isMeshed = [meshed](const TopoDS_Shape& shape) { return meshed->contains(shape); };
    return true;
}

} // namespace Vs::Translate::Shares
