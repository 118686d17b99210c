#include "Server/Translate/StepWriter.h"

#include "Server/Translate/Reading.h"

#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Writer.hxx>

namespace Vs::Translate {

void writeStep(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter)
{
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.schema", "AP214IS");
    Interface_Static::SetCVal("write.step.unit", unitWord(writing).c_str());
    STEPCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    writer.SetLayerMode(true);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Transfer(model.document(), STEPControl_AsIs, nullptr, progress->Start()))
        throw Unreadable("can't be expressed as STEP");
    reporter.stage("writing the file", 0.7, 1.0);
    if (writer.Write(path.c_str()) != IFSelect_RetDone)
        throw Unreadable("can't be written");
}

} // namespace Vs::Translate
