#pragma once

#include "Server/DataModel/Kernel/LabelState.h"
#include "Server/DataModel/Kernel/TouchedLabels.h"
#include "Server/DataModel/Model/ModelKernel.h"

#include <TDF_LabelMap.hxx>
#include <TDF_Transaction.hxx>
#include <TDocStd_Document.hxx>

#include <memory>
#include <string>
#include <vector>

namespace Vs::Kernel {

/// The changes of an XDE document, one at a time. The kernel's own transactions look at all neighbours of
/// what they changed when they end, ten thousand parts if need be. So what only sets small attributes
/// (LabelState) is kept beside them, and the kernel's is begun by what needs it. In the same way components
/// are only marked as removed, and stay where they can be brought back, until the kernel's next transaction
/// takes them out.
///
/// Small changes and the kernel's can follow on each other in any order, as they are only ever taken back in
/// the opposite one.
class XdeTransaction
{
public:
    XdeTransaction() = default;
    void document(const Handle(TDocStd_Document) & document);

    void begin();
    /// Ends what was begun. Null if nothing was changed.
    std::unique_ptr<ModelChange> commit();
    void abort();
    /// Throws std::runtime_error if the change isn't the last one.
    std::unique_ptr<ModelChange> revert(const ModelChange& change);

    /// Whether what is begun consists of small changes so far.
    bool isSmall() const { return m_begun && !m_kernel.IsOpen(); }
    /// Before a small change of the label; nothing if none is begun, or the kernel watches by itself.
    void note(const TDF_Label& label);
    /// After a part was put on a new label at the top, before it gets its name and colour there. If it is
    /// taken back, the part stays where it is, marked as removed.
    void noteAdded(const TDF_Label& part);
    /// Before all other changes. What was removed isn't in the document any more then.
    void beginKernel();
    /// Removes components (Component::id); see ModelKernel::remove.
    void remove(const std::vector<std::string>& components);

    /// Runs `work()` while what was removed isn't in the document; afterwards the document is as before.
    template <class Work>
    void withoutRemoved(Work&& work)
    {
        TDF_Transaction meanwhile(m_document->GetData());
        if (!m_removed.IsEmpty()) {
            meanwhile.Open();
            takeOutRemoved();
        }
        work();
    }

    TouchedLabels& touched() { return m_touched; }
    /// Makes the shapes of assemblies anew if that is needed; changes don't.
    void updateAssemblies();

private:
    void takeOutRemoved();
    LabelDifferences takeSmall();
    void follow(const LabelDifference& difference);
    void follow(const Handle(TDF_Delta) & delta);
    void followRemoved(const TDF_Label& label);
    LabelDifferences takeBack(const LabelDifferences& differences);

    Handle(TDocStd_Document) m_document;
    bool m_begun = false;
    LabelLog m_small;
    LabelDifferences m_beforeKernel; ///< What small changes did before the kernel's transaction.
    TDF_Transaction m_kernel;
    std::vector<TDF_Label> m_added; ///< Parts, by what is begun.
    TDF_LabelMap m_removed;
    TouchedLabels m_touched;
    bool m_assembliesStale = false;
};

} // namespace Vs::Kernel
