// The worker for files of plain shapes and of triangles: BREP and STL.

#include "Server/Translate/BrepReader.h"
#include "Server/Translate/BrepWriter.h"
#include "Server/Translate/Family.h"
#include "Server/Translate/RefuseMeshes.h"
#include "Server/Translate/StlReader.h"

namespace Vs::Translate {

std::shared_ptr<Helpers> helpersFor(Exchange::Format, const std::string&, const Help&)
{
    return nullptr;
}

Reading readFile(Exchange::Format format, const std::string& path, const ReadingOptions&, Reporter& reporter)
{
    switch (format) {
    case Exchange::Format::Brep:
        return readBrep(path, reporter);
    case Exchange::Format::Stl:
        return readStl(path, reporter);
    default:
        throw Unreadable("is of a format that can't be read");
    }
}

void writeFile(Exchange::Format format, Kernel::XdeModel& model, const Writing&, const std::string& path,
               Reporter& reporter)
{
    if (format != Exchange::Format::Brep)
        throw Unreadable("is of a format that can't be written");
    refuseMeshes(model);
    reporter.stage("preparing the file", 0.1, 0.7);
    writeBrep(model, path);
}

} // namespace Vs::Translate
