#include "Server/Translate/IgesWriter.h"

#include "Server/Translate/Reading.h"
#include "Server/Translate/ShortNames.h"

#include <IGESCAFControl_Writer.hxx>
#include <IGESControl_Controller.hxx>
#include <IGESData_GlobalSection.hxx>
#include <IGESData_IGESModel.hxx>
#include <Interface_Static.hxx>

namespace Vs::Translate {

namespace {

Handle(TCollection_HAsciiString) text(const std::string& words)
{
    return new TCollection_HAsciiString(words.c_str());
}

// Replaces the kernel's own text, and the user's name, which stays private.
void describe(const Handle(IGESData_IGESModel) & model, const Writing& writing)
{
    IGESData_GlobalSection section = model->GlobalSection();
    section.SetSendName(text(writing.document));
    section.SetReceiveName(text(writing.document));
    section.SetFileName(text(writing.document));
    section.SetSystemId(text(writing.software));
    section.SetInterfaceVersion(text(writing.software));
    section.SetAuthorName(text(""));
    section.SetCompanyName(text(""));
    model->SetGlobalSection(section);
}

} // namespace

void writeIges(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter)
{
    IGESControl_Controller::Init();
    Interface_Static::SetCVal("write.iges.unit", unitWord(writing).c_str());
    // As solids; by default the kernel writes only their faces.
    Interface_Static::SetIVal("write.iges.brep.mode", 1);
    IGESCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    writer.SetLayerMode(true);
    shortenNames(model);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Transfer(model.document(), progress->Start()))
        throw Unreadable("can't be expressed as IGES");
    describe(writer.Model(), writing);
    reporter.stage("writing the file", 0.7, 1.0);
    if (!writer.Write(path.c_str()))
        throw Unreadable("can't be written");
}

} // namespace Vs::Translate
