#pragma once

#include <STEPCAFControl_Writer.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>

namespace Vs::Translate {

/// Writes what the kernel's own writer does, but passes it only a few labels at a time to colour: for each of
/// them it searches the list from the beginning, so that twice as many take four times as long.
class LabelledStepWriter : public STEPCAFControl_Writer
{
public:
    /// With names, colours, layers, annotations and materials. Returns whether it succeeded.
    bool transferDocument(const Handle(TDocStd_Document) & document, const Message_ProgressRange& range);

private:
    void setNothingBesides();
    void writeColoursInPieces(const TDF_LabelSequence& labels);
};

} // namespace Vs::Translate
