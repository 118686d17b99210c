// The worker for STEP files.

#include "Server/Translate/Family.h"
#include "Server/Translate/RefuseMeshes.h"
#include "Server/Translate/Salvage/FaceTrials.h"
#include "Server/Translate/Salvage/Salvage.h"
#include "Server/Translate/Shares/ShareReaders.h"
#include "Server/Translate/StepReader.h"
#include "Server/Translate/StepWriter.h"

namespace Vs::Translate {

std::shared_ptr<Helpers> helpersFor(Exchange::Format format, const std::string& path, const Help& help)
{
    if (format != Exchange::Format::Step)
        return nullptr;
    if (help.facewise)
        return Salvage::FaceTrials::start(path, help, {Salvage::facesOf, readSoundStep});
    return Shares::ShareReaders::start(path, help);
}

Reading readFile(Exchange::Format format, const std::string& path, const ReadingOptions& options,
                 Reporter& reporter)
{
    if (format != Exchange::Format::Step)
        throw Unreadable("is of a format that can't be read");
    return readStep(path, options, reporter);
}

void writeFile(Exchange::Format format, Kernel::XdeModel& model, const Writing& writing,
               const std::string& path, Reporter& reporter)
{
    if (format != Exchange::Format::Step)
        throw Unreadable("is of a format that can't be written");
    refuseMeshes(model);
    reporter.stage("preparing the file", 0.1, 0.7);
    writeStep(model, writing, path, reporter);
}

} // namespace Vs::Translate
