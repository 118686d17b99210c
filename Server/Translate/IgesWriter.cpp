#include "Server/Translate/IgesWriter.h"

#include "Server/Translate/Reading.h"

#include <IGESCAFControl_Writer.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Static.hxx>

namespace Vs::Translate {

void writeIges(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter)
{
    IGESControl_Controller::Init();
    Interface_Static::SetCVal("write.iges.unit", unitWord(writing).c_str());
    // As solids; by default the kernel writes their faces alone.
    Interface_Static::SetIVal("write.iges.brep.mode", 1);
    IGESCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    writer.SetLayerMode(true);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Transfer(model.document(), progress->Start()))
        throw Unreadable("can't be expressed as IGES");
    reporter.stage("writing the file", 0.7, 1.0);
    if (!writer.Write(path.c_str()))
        throw Unreadable("can't be written");
}

} // namespace Vs::Translate
