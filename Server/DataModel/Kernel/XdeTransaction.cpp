#include "Server/DataModel/Kernel/XdeTransaction.h"

#include "Server/DataModel/Kernel/XdeEdit.h"

#include <TDF_AttributeDelta.hxx>
#include <TDF_Data.hxx>
#include <TDF_Delta.hxx>
#include <TDF_MapIteratorOfLabelMap.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <ranges>
#include <stdexcept>
#include <utility>
#include <variant>

namespace Vs::Kernel {

namespace {

using Small = LabelDifferences;
using Part = std::variant<Small, Handle(TDF_Delta)>;

class XdeChange : public ModelChange
{
public:
    explicit XdeChange(std::vector<Part> parts) : m_parts(std::move(parts)) {}
    /// In the order in which they were made.
    const std::vector<Part>& parts() const { return m_parts; }

private:
    std::vector<Part> m_parts;
};

} // namespace

void XdeTransaction::document(const Handle(TDocStd_Document) & document)
{
    m_document = document;
    m_kernel.Initialize(document->GetData());
}

void XdeTransaction::begin()
{
    m_begun = true;
}

void XdeTransaction::beginKernel()
{
    if (!isSmall())
        return;
    m_beforeKernel = m_small.take();
    m_kernel.Open();
    takeOutRemoved();
}

void XdeTransaction::note(const TDF_Label& label)
{
    if (isSmall())
        m_small.note(label);
}

void XdeTransaction::noteAdded(const TDF_Label& part)
{
    if (!isSmall())
        return;
    markRemoved(part);
    m_small.note(part);
    markRemoved(part, false);
    m_added.push_back(part);
}

void XdeTransaction::remove(const std::vector<std::string>& components)
{
    eachToRemove(m_document, components, [&](const TDF_Label& label) {
        if (!isSmall()) {
            removeOccurrence(label);
            return;
        }
        note(label);
        markRemoved(label);
    });
}

void XdeTransaction::takeOutRemoved()
{
    // The kernel can't take back that a label lost something and got something else in one transaction.
    for (TDF_MapIteratorOfLabelMap each(m_removed); each.More(); each.Next())
        keepNumber(each.Key());
    // One that lies in another goes with it.
    for (TDF_MapIteratorOfLabelMap each(m_removed); each.More(); each.Next())
        if (isRemoved(each.Key()))
            removeOccurrence(each.Key());
}

void XdeTransaction::updateAssemblies()
{
    // With what is removed only meanwhile, the shapes without it go as well.
    if (std::exchange(m_assembliesStale, !m_removed.IsEmpty()))
        XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->UpdateAssemblies();
}

void XdeTransaction::followRemoved(const TDF_Label& label)
{
    if (isRemoved(label))
        m_removed.Add(label);
    else
        m_removed.Remove(label);
}

void XdeTransaction::follow(const LabelDifference& difference)
{
    const auto& [label, before, after] = difference;
    m_touched.add(label, before.name != after.name || before.hidden != after.hidden ||
                             before.namedByUser != after.namedByUser || before.place != after.place ||
                             before.surfaceColour != after.surfaceColour || before.colour != after.colour);
    m_assembliesStale |= before.removed != after.removed || before.place != after.place;
    followRemoved(label);
}

void XdeTransaction::follow(const Handle(TDF_Delta) & delta)
{
    m_touched.add(delta);
    m_assembliesStale = true;
    for (const Handle(TDF_AttributeDelta) & each : delta->AttributeDeltas())
        followRemoved(each->Label());
}

/// What was done before the kernel's transaction.
LabelDifferences XdeTransaction::takeSmall()
{
    return m_kernel.IsOpen() ? std::exchange(m_beforeKernel, {}) : m_small.take();
}

std::unique_ptr<ModelChange> XdeTransaction::commit()
{
    m_begun = false;
    m_added.clear();
    std::vector<Part> parts;
    if (Small small = takeSmall(); !small.empty()) {
        for (const LabelDifference& each : small)
            follow(each);
        parts.emplace_back(std::move(small));
    }
    if (m_kernel.IsOpen()) {
        const Handle(TDF_Delta) delta = m_kernel.Commit(true);
        follow(delta);
        // Touching something and restoring it has advanced the kernel's clock, by which older changes are
        // identified.
        if (delta->IsEmpty())
            m_document->GetData()->Undo(delta, false);
        else
            parts.emplace_back(delta);
    }
    return parts.empty() ? nullptr : std::make_unique<XdeChange>(std::move(parts));
}

void XdeTransaction::abort()
{
    m_begun = false;
    const LabelDifferences small = takeSmall();
    if (m_kernel.IsOpen())
        m_kernel.Abort();
    for (const LabelDifference& each : small | std::views::reverse)
        each.before.putOn(each.label);
    // What was never there can't be brought back.
    for (const TDF_Label& part : std::exchange(m_added, {}) | std::views::reverse)
        clearLabel(part);
}

LabelDifferences XdeTransaction::takeBack(const LabelDifferences& differences)
{
    LabelDifferences opposite;
    for (const auto& [label, before, after] : differences | std::views::reverse) {
        before.putOn(label);
        follow(opposite.emplace_back(LabelDifference{label, after, before}));
    }
    return opposite;
}

std::unique_ptr<ModelChange> XdeTransaction::revert(const ModelChange& change)
{
    const std::vector<Part>& parts = static_cast<const XdeChange&>(change).parts();
    const Handle(TDF_Data) data = m_document->GetData();
    for (const Part& part : parts)
        if (const auto* delta = std::get_if<Handle(TDF_Delta)>(&part);
            delta && !(*delta)->IsApplicable(data->Time()))
            throw std::runtime_error("the model was changed since in a way that can't be taken back");
    std::vector<Part> opposite;
    for (const Part& part : parts | std::views::reverse) {
        if (const auto* small = std::get_if<Small>(&part)) {
            opposite.emplace_back(takeBack(*small));
            continue;
        }
        const auto& delta = std::get<Handle(TDF_Delta)>(part);
        opposite.emplace_back(data->Undo(delta, true));
        follow(delta);
    }
    return std::make_unique<XdeChange>(std::move(opposite));
}

} // namespace Vs::Kernel
