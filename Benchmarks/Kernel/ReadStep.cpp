#include "Benchmarks/Kernel/ReadInput.h"

#include <IFSelect_ReturnStatus.hxx>
#include <STEPCAFControl_Reader.hxx>

bool readInput(const char* path, Handle(TDocStd_Document) & document, bool)
{
    STEPCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetGDTMode(true); // Quillet reads the annotations, too.
    return reader.ReadFile(path) == IFSelect_RetDone && reader.Transfer(document);
}
