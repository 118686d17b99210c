#pragma once

#include <STEPControl_ActorRead.hxx>

#include <memory>

namespace Vs::Translate {

class StepAssemblies;

/// Transfers what the kernel's own actor does, to the same shapes, but in a time that grows linearly with the
/// number of occurrences. For each occurrence the kernel examines everything that refers to its part and to
/// its assembly, so that twice as many take four times as long. Here occurrences are placed before the kernel
/// asks for them, from the innermost assembly outwards, so that its own recursion ends at the first step,
/// however deep the assemblies are.
///
/// Set it on a session's TransferReader before the transfer. Throws Unreadable if an assembly contains
/// itself.
class StepActor : public STEPControl_ActorRead
{
public:
    StepActor();
    ~StepActor() override;

    Handle(Transfer_Binder)
        Transfer(const Handle(Standard_Transient) & start, const Handle(Transfer_TransientProcess) & process,
                 const Message_ProgressRange& range) override;

private:
    std::unique_ptr<StepAssemblies> m_assemblies; // Of the file of the last transfer.
};

} // namespace Vs::Translate
