#include "Server/Translate/Readers.h"

#include <IGESCAFControl_Reader.hxx>

namespace Vs::Translate {

Reading readIges(const std::string& path, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    const auto reader = std::make_shared<IGESCAFControl_Reader>();
    reader->SetColorMode(true);
    reader->SetNameMode(true);
    reader->SetLayerMode(false);
    reader->SetReadVisible(true);
    reporter.stage("reading the file", 0.0, 0.3);
    if (reader->ReadFile(path.c_str()) != IFSelect_RetDone)
        throw Unreadable("isn't a valid IGES file: its text can't be understood");
    reporter.stage("transferring the shapes", 0.3, 0.65);
    Handle(TDocStd_Document) document = reading.model->document();
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!reader->Transfer(document, progress->Start()))
        throw Unreadable("holds no shapes that can be read");
    reading.keep = reader;
    return reading;
}

} // namespace Vs::Translate
