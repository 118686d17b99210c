// The worker for VRML files.

#include "Server/Translate/Family.h"
#include "Server/Translate/VrmlReader.h"

namespace Vs::Translate {

std::shared_ptr<Helpers> helpersFor(Exchange::Format, const std::string&, const Help&)
{
    return nullptr;
}

Reading readFile(Exchange::Format format, const std::string& path, const ReadingOptions&, Reporter& reporter)
{
    if (format != Exchange::Format::Vrml)
        throw Unreadable("is of a format that can't be read");
    return readVrml(path, reporter);
}

void writeFile(Exchange::Format, Kernel::XdeModel&, const Writing&, const std::string&, Reporter&)
{
    throw Unreadable("is of a format that can't be written");
}

} // namespace Vs::Translate
