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

/// The changes of an XDE document, one at a time. When the kernel's own transactions end they visit all
/// siblings of what they changed, possibly ten thousand parts. So changes that only set small attributes
/// (LabelState) are kept separately, and a transaction of the kernel is begun only for what needs one.
/// Likewise components are only marked as removed, and stay restorable in place, until the kernel's next
/// transaction takes them out.
///
/// Small changes and the kernel's can follow each other in any order, since they are only ever undone in
/// reverse order.
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

    /// Whether the open transaction consists only of small changes so far.
    bool isSmall() const { return m_begun && !m_kernel.IsOpen(); }
    /// Call before a small change of the label; does nothing if no transaction is open, or the kernel tracks
    /// changes itself.
    void note(const TDF_Label& label);
    /// Call after a part was put on a new label at the top, before it gets its name and colour there. If that
    /// is undone, the part stays where it is, marked as removed.
    void noteAdded(const TDF_Label& part);
    /// Call before all other changes. What was removed is then no longer in the document.
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
    /// Rebuilds the shapes of assemblies if needed; changes don't.
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
    LabelDifferences m_beforeKernel; ///< Small changes made before the kernel's transaction.
    TDF_Transaction m_kernel;
    std::vector<TDF_Label> m_added; ///< Parts, by the open transaction.
    TDF_LabelMap m_removed;
    TouchedLabels m_touched;
    bool m_assembliesStale = false;
};

} // namespace Vs::Kernel
