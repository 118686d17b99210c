#include "Server/Translate/StepWriter.h"

#include "Server/Translate/LabelledStepWriter.h"
#include "Server/Translate/Reading.h"
#include "Server/Translate/ShortNames.h"
#include "Server/Translate/WholeCharacters.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <StepData_StepModel.hxx>

namespace Vs::Translate {

namespace {

Handle(TCollection_HAsciiString) text(const std::string& words)
{
    return new TCollection_HAsciiString(words.c_str());
}

// Replaces the kernel's own text, and the user's name, which stays private.
void describe(const Handle(StepData_StepModel) & model, const Writing& writing)
{
    APIHeaderSection_MakeHeader header(model);
    header.SetName(text(writing.document));
    header.SetDescriptionValue(1, text(writing.document));
    header.SetAuthorValue(1, text(""));
    header.SetOrganizationValue(1, text(""));
    header.SetPreprocessorVersion(text(writing.software));
    header.SetOriginatingSystem(text(writing.software));
    header.SetAuthorisation(text(""));
}

} // namespace

void writeStep(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter)
{
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.schema", "AP214IS");
    Interface_Static::SetCVal("write.step.unit", unitWord(writing).c_str());
    Interface_Static::SetCVal("write.step.product.name", writing.document.c_str());
    LabelledStepWriter writer;
    shortenNames(model);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.transferDocument(model.document(), progress->Start()))
        throw Unreadable("can't be expressed as STEP");
    describe(writer.ChangeWriter().Model(), writing);
    reporter.stage("writing the file", 0.7, 1.0);
    if (writer.Write(path.c_str()) != IFSelect_RetDone)
        throw Unreadable("can't be written");
    // The kernel breaks lines by bytes, and its reader takes the broken characters for others.
    keepCharactersWhole(path);
}

} // namespace Vs::Translate
