#include "Server/Translate/StepActor.h"

#include "Server/Translate/StepAssemblies.h"

#include <HeaderSection_FileName.hxx>
#include <Interface_EntityIterator.hxx>
#include <StepData_StepModel.hxx>
#include <StepShape_NonManifoldSurfaceShapeRepresentation.hxx>
#include <TCollection_HAsciiString.hxx>

namespace Vs::Translate {

namespace {

// The kernel carries state over from one occurrence to the next where bodies share faces, and for files from
// one program whose bodies it must sew together.
bool sharesFaces(const Handle(Interface_InterfaceModel) & model)
{
    const auto step = Handle(StepData_StepModel)::DownCast(model);
    if (step.IsNull())
        return true;
    for (Interface_EntityIterator each = step->Header(); each.More(); each.Next()) {
        const auto name = Handle(HeaderSection_FileName)::DownCast(each.Value());
        if (!name.IsNull() && !name->PreprocessorVersion().IsNull() &&
            name->PreprocessorVersion()->Search("I-DEAS") != -1)
            return true;
    }
    for (int i = 1; i <= step->NbEntities(); ++i)
        if (step->Value(i)->IsKind(STANDARD_TYPE(StepShape_NonManifoldSurfaceShapeRepresentation)))
            return true;
    return false;
}

} // namespace

StepActor::StepActor() = default;
StepActor::~StepActor() = default;

Handle(Transfer_Binder) StepActor::Transfer(const Handle(Standard_Transient) & start,
                                            const Handle(Transfer_TransientProcess) & process,
                                            const Message_ProgressRange& range)
{
    const auto product = Handle(StepBasic_ProductDefinition)::DownCast(start);
    if (product.IsNull())
        return STEPControl_ActorRead::Transfer(start, process, range);
    if (!m_assemblies || m_assemblies->process() != process)
        m_assemblies =
            sharesFaces(process->Model()) ? nullptr : std::make_unique<StepAssemblies>(*this, process);
    Message_ProgressScope scope(range, "Product", 2);
    if (m_assemblies)
        m_assemblies->bindBelow(product, scope.Next());
    return STEPControl_ActorRead::Transfer(start, process, scope.Next());
}

} // namespace Vs::Translate
