#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/TriangleLimits.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/KernelMessages.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Readers.h"

#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <RWGltf_CafWriter.hxx>
#include <RWObj_CafWriter.hxx>
#include <TColStd_IndexedDataMapOfStringString.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/transform_width.hpp>

#include <filesystem>
#include <fstream>

namespace Vs::Translate {

namespace {

namespace fs = std::filesystem;

constexpr double kMillimetre = 0.001;

bool isMeshed(const TopoDS_Shape& shape)
{
    TopLoc_Location location;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        if (BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location).IsNull())
            return false;
    return true;
}

// Each shape is meshed once, wherever it occurs; what consists of triangles stays as it is.
void meshParts(Kernel::XdeModel& model, const TranslatorRefinement& refinement, Reporter& reporter)
{
    const Kernel::XdeTree tree = Kernel::readXdeTree(model.document());
    for (size_t i = 0; i < tree.shapes.size(); ++i) {
        if (tree.shapes[i].IsNull())
            continue;
        // To find out that there is nothing to do takes the kernel nearly as long as doing it.
        const bool usual = refinement == TranslatorRefinement{};
        if (!usual)
            BRepTools::Clean(tree.shapes[i]);
        if (!usual || !isMeshed(tree.shapes[i]))
            Kernel::meshShape(tree.shapes[i], refinement);
        Kernel::limitTriangles(tree.shapes[i], refinement);
        reporter.progress(double(i + 1) / double(tree.shapes.size()));
    }
}

template <class Writer>
void write(Writer& writer, Kernel::XdeModel& model, const Writing& writing, Reporter& reporter)
{
    reporter.stage("meshing the parts", 0.1, 0.6);
    meshParts(model, writing.refinement, reporter);
    reporter.stage("writing the file", 0.6, 0.95);
    const KernelMessages messages;
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Perform(model.document(), TColStd_IndexedDataMapOfStringString(), progress->Start()))
        throw Unreadable("can't be written: " + (messages.faults().empty()
                                                     ? "there is nothing in it that has a surface"
                                                     : firstOf(messages.faults())));
}

std::string base64(std::string bytes)
{
    using namespace boost::archive::iterators;
    using Digits = base64_from_binary<transform_width<std::string::const_iterator, 6, 8>>;
    const size_t missing = (3 - bytes.size() % 3) % 3;
    bytes.append(missing, '\0');
    std::string text(Digits(bytes.cbegin()), Digits(bytes.cend()));
    text.replace(text.size() - missing, missing, missing, '=');
    return text;
}

// The kernel writes the numbers into a second file; within the first one, neither can be lost or replaced
// alone.
void embedNumbers(const std::string& path)
{
    const fs::path numbers = fs::path(path).replace_extension(".bin");
    const std::string reference = "\"uri\":\"" + numbers.filename().string() + '"';
    std::string text{MappedFile(path).bytes()};
    const size_t place = text.find(reference);
    if (place == std::string::npos)
        throw Unreadable("can't be written: its numbers are missing");
    text.replace(place, reference.size(),
                 "\"uri\":\"data:application/octet-stream;base64," +
                     base64(std::string(MappedFile(numbers).bytes())) + '"');
    std::ofstream stream(path, std::ios::binary);
    if (!stream.write(text.data(), std::streamsize(text.size())).flush())
        throw Unreadable("can't be written: there is no room for it");
    fs::remove(numbers);
}

} // namespace

void writeObj(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter)
{
    const Handle(RWObj_CafWriter) writer = new RWObj_CafWriter(path.c_str());
    RWMesh_CoordinateSystemConverter& system = writer->ChangeCoordinateSystemConverter();
    system.SetInputLengthUnit(kMillimetre);
    system.SetOutputLengthUnit(kMillimetre * writing.unitSize);
    system.SetInputCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    system.SetOutputCoordinateSystem(RWMesh_CoordinateSystem_negZfwd_posYup);
    write(*writer, model, writing, reporter);
}

void writeGltf(Kernel::XdeModel& model, const Writing& writing, bool binary, const std::string& path,
               Reporter& reporter)
{
    const Handle(RWGltf_CafWriter) writer = new RWGltf_CafWriter(path.c_str(), binary);
    RWMesh_CoordinateSystemConverter& system = writer->ChangeCoordinateSystemConverter();
    system.SetInputLengthUnit(kMillimetre);
    system.SetInputCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    // One array of triangles for each colour of a part, in place of one for each face.
    writer->SetMergeFaces(true);
    write(*writer, model, writing, reporter);
    if (!binary)
        embedNumbers(path);
}

} // namespace Vs::Translate
