#include "Benchmarks/Kernel/ReadInput.h"

#include <RWGltf_CafReader.hxx>
#include <RWObj_CafReader.hxx>

#include <string_view>

bool readInput(const char* path, Handle(TDocStd_Document) & document, bool parallel)
{
    constexpr double kMillimetre = 0.001;
    Handle(RWMesh_CafReader) reader;
    if (std::string_view(path).ends_with(".obj")) {
        reader = new RWObj_CafReader;
        reader->SetFileLengthUnit(kMillimetre);
    } else {
        const Handle(RWGltf_CafReader) gltf = new RWGltf_CafReader;
        gltf->SetParallel(parallel);
        reader = gltf;
    }
    reader->SetDocument(document);
    reader->SetSystemLengthUnit(kMillimetre);
    reader->SetSystemCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    return reader->Perform(path, Message_ProgressRange());
}
