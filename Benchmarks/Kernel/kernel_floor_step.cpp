// The floor of writing: what a program takes that does nothing but call the kernel, to write a STEP file with
// names and colours of a document in the kernel's own binary file, as kernel_floor stores it. Prints one line
// of JSON.

#include "Benchmarks/Measure.h"

#include <BinXCAFDrivers.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFApp_Application.hxx>

#include <cstdio>

using Benchmarks::milliseconds, Benchmarks::peakKiB;

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: kernel_floor_step IN.xbf OUT.stp\n");
        return 2;
    }
    Message::DefaultMessenger()->ChangePrinters().Clear();
    const Handle(XCAFApp_Application) application = XCAFApp_Application::GetApplication();
    BinXCAFDrivers::DefineFormat(application);
    Handle(TDocStd_Document) document;
    if (application->Open(argv[1], document) != PCDM_RS_OK) {
        std::fprintf(stderr, "kernel_floor_step: cannot read %s\n", argv[1]);
        return 1;
    }
    const double start = milliseconds();
    STEPCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    if (!writer.Transfer(document) || writer.Write(argv[2]) != IFSelect_RetDone) {
        std::fprintf(stderr, "kernel_floor_step: cannot write %s\n", argv[2]);
        return 1;
    }
    std::printf("{\"write_ms\": %.1f, \"peak_kib\": %ld}\n", milliseconds() - start, peakKiB());
    // As in kernel_floor, nobody waits for what the kernel takes apart.
    std::fflush(stdout);
    std::_Exit(0);
}
