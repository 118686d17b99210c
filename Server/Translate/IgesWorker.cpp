// The worker for IGES files.

#include "Server/Translate/Family.h"
#include "Server/Translate/IgesReader.h"
#include "Server/Translate/IgesWriter.h"
#include "Server/Translate/RefuseMeshes.h"
#include "Server/Translate/Salvage/FaceTrials.h"
#include "Server/Translate/Salvage/IgesSalvage.h"

namespace Vs::Translate {

std::shared_ptr<Helpers> helpersFor(Exchange::Format format, const std::string& path, const Help& help)
{
    if (format != Exchange::Format::Iges || !help.facewise)
        return nullptr;
    return Salvage::FaceTrials::start(path, help, {Salvage::facesOfIges, readSoundIges});
}

Reading readFile(Exchange::Format format, const std::string& path, const ReadingOptions& options,
                 Reporter& reporter)
{
    if (format != Exchange::Format::Iges)
        throw Unreadable("is of a format that can't be read");
    return readIges(path, options, reporter);
}

void writeFile(Exchange::Format format, Kernel::XdeModel& model, const Writing& writing,
               const std::string& path, Reporter& reporter)
{
    if (format != Exchange::Format::Iges)
        throw Unreadable("is of a format that can't be written");
    refuseMeshes(model);
    reporter.stage("preparing the file", 0.1, 0.7);
    writeIges(model, writing, path, reporter);
}

} // namespace Vs::Translate
