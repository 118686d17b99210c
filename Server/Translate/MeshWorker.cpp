// The worker for the formats of triangles with names, colours and structure: OBJ and glTF.

#include "Server/Translate/Family.h"
#include "Server/Translate/MeshReaders.h"

namespace Vs::Translate {

using Exchange::Format;

std::shared_ptr<Helpers> helpersFor(Exchange::Format, const std::string&, const Help&)
{
    return nullptr;
}

Reading readFile(Format format, const std::string& path, const ReadingOptions&, Reporter& reporter)
{
    switch (format) {
    case Format::Obj:
        return readObj(path, reporter);
    case Format::Gltf:
    case Format::Glb:
        return readGltf(path, format == Format::Glb, reporter);
    default:
        throw Unreadable("is of a format that can't be read");
    }
}

void writeFile(Format, Kernel::XdeModel&, const Writing&, const std::string&, Reporter&)
{
    throw Unreadable("is of a format that the program writes by itself");
}

} // namespace Vs::Translate
