#include "Server/Translate/MeshReaders.h"

#include "Server/Translate/Beside.h"
#include "Server/Translate/GltfNodes.h"
#include "Server/Translate/KernelMessages.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/MaterialColours.h"
#include "Server/Translate/MeshParts.h"
#include "Server/Translate/ObjLibraries.h"
#include "Server/Translate/Wall.h"

#include <RWGltf_CafReader.hxx>
#include <RWObj_CafReader.hxx>
#include <Standard_Failure.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <new>

namespace Vs::Translate {

namespace {

namespace fs = std::filesystem;

constexpr double kMillimetre = 0.001;

// An exception thrown in the kernel's threads arrives as another type, with the original type's name in its
// text.
bool perform(RWMesh_CafReader& reader, const std::string& path, const Message_ProgressRange& progress)
{
    try {
        return reader.Perform(path.c_str(), progress);
    } catch (const Standard_Failure& failure) {
        if (std::strstr(failure.GetMessageString(), "OutOfMemory"))
            throw std::bad_alloc();
        throw;
    }
}

Handle(TDataStd_Name) nameOf(const TDF_Label& label)
{
    Handle(TDataStd_Name) name;
    label.FindAttribute(TDataStd_Name::GetID(), name);
    return name;
}

// For the kernel, an object of several colours has one part without its own name.
void nameOnlyPart(const TDF_Label& object)
{
    TDF_LabelSequence parts;
    XCAFDoc_ShapeTool::GetComponents(object, parts);
    TDF_Label product;
    if (parts.Length() != 1 || nameOf(object).IsNull() ||
        !XCAFDoc_ShapeTool::GetReferredShape(parts.First(), product))
        return;
    for (const TDF_Label& label : {parts.First(), product})
        if (const Handle(TDataStd_Name) name = nameOf(label); name.IsNull() || name->Get() == "Compound")
            TDataStd_Name::Set(label, nameOf(object)->Get());
}

// The kernel names the root of several groups after the file; users know it without the suffix.
void nameRoots(const Handle(TDocStd_Document) & document, const std::string& path)
{
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(roots);
    const TCollection_ExtendedString file(fs::path(path).filename().c_str(), true);
    for (const TDF_Label& root : roots) {
        if (const Handle(TDataStd_Name) name = nameOf(root); !name.IsNull() && name->Get() == file)
            name->Set(TCollection_ExtendedString(stemOf(path).c_str(), true));
        nameOnlyPart(root);
    }
}

Reading readMesh(RWMesh_CafReader& reader, const char* format, const std::string& path,
                 const std::string& ifEmpty, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    reading.ifEmpty = ifEmpty;
    reader.SetDocument(reading.model->document());
    reader.SetSystemLengthUnit(kMillimetre);
    reader.SetSystemCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    const KernelMessages messages;
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    const bool complete = perform(reader, path, progress->Start());
    nameRoots(reading.model->document(), path);
    reporter.stage("making the parts", 0.7, 0.95);
    const auto invalid = [&] {
        return Unreadable(std::string("isn't a valid ") + format + " file: " + firstOf(messages.faults()));
    };
    if (!complete && messages.faults().empty())
        throw Unreadable(std::string("isn't a valid ") + format + " file");
    if (!complete)
        throw invalid();
    MaterialColours colours;
    try {
        takeMeshes(reading, reporter, [&](XCAFDoc_VisMaterial& material) { colours.settle(material); });
    } catch (const Unreadable&) {
        if (!messages.faults().empty())
            throw invalid();
        throw;
    }
    if (!messages.faults().empty())
        reading.warnings.push_back("is damaged, and parts of it were left out: " +
                                   firstOf(messages.faults()));
    if (!colours.faults().empty())
        reading.warnings.push_back("is shown without some of its pictures: " + firstOf(colours.faults()));
    std::vector<std::string> remarks;
    for (const std::string& remark : messages.remarks())
        // Remarks such as that polygons become triangles are no cause for concern.
        if (remark.find("not found") != std::string::npos || remark.find("unsupported") != std::string::npos)
            remarks.push_back(remark);
    if (!remarks.empty())
        reading.warnings.push_back("couldn't be read as it is meant: " + firstOf(remarks));
    return reading;
}

bool holds(std::string_view text, std::string_view word)
{
    return text.find(word) != std::string_view::npos;
}

// The text of a glTF file; in a GLB file it is the first chunk, between lengths and the binary data.
std::string_view jsonOf(std::string_view bytes, bool binary)
{
    constexpr size_t kLengthPlace = 12, kBegin = 20;
    uint32_t length = 0;
    if (!binary || bytes.size() < kBegin)
        return bytes;
    std::memcpy(&length, bytes.data() + kLengthPlace, sizeof length);
    return bytes.substr(kBegin, length);
}

// False only if everything that the text refers to is inside it. Having the kernel read everything just to
// find that out would take as long as the real reading.
bool mayReferToFiles(std::string_view json)
{
    constexpr std::string_view kMember = "\"uri\"", kWithin = "\"data:";
    // The member's name may be hidden behind escapes.
    if (holds(json, "\\u"))
        return true;
    for (size_t at = json.find(kMember); at != std::string_view::npos; at = json.find(kMember, at + 1)) {
        const size_t value = json.find_first_not_of(" \t\r\n:", at + kMember.size());
        if (value == std::string_view::npos || !json.substr(value).starts_with(kWithin))
            return true;
    }
    return false;
}

// Reports the material libraries next to the file, and returns those that are elsewhere. The kernel asks for
// these too, and the worker's wall refuses them; if they don't exist, it doesn't read a file that names them
// at all.
std::vector<std::string> takeLibraries(const std::string& path, Reporter& reporter)
{
    const fs::path folder = fs::path(path).parent_path();
    const MappedFile file(path);
    const std::string joined = joinedObjLines(file.bytes());
    std::vector<std::string> elsewhere;
    for (const std::vector<std::string>& names : objLibraries(joined.empty() ? file.bytes() : joined)) {
        const bool beside = std::all_of(names.begin(), names.end(), [&](std::string name) {
            // As other systems write it.
            std::replace(name.begin(), name.end(), '\\', '/');
            return liesBeside(path, folder / name);
        });
        if (!beside)
            elsewhere.push_back(names.front());
        else
            for (const std::string& name : names)
                reporter.dependsOn((folder / name).string());
    }
    if (!raisedWall().files && !elsewhere.empty())
        throw Unreadable(refusalOf(elsewhere.front()));
    if (!raisedWall().files && !hasOnlyPlainLibraries(file.bytes()))
        throw Unreadable("names other files in a way that can't be checked on this system");
    return elsewhere;
}

// A GLB file begins with "glTF", its version and its length, each four bytes.
void checkComplete(std::string_view bytes)
{
    constexpr size_t kHeader = 12, kLengthPlace = 8;
    uint32_t told = 0;
    if (bytes.size() >= kHeader)
        std::memcpy(&told, bytes.data() + kLengthPlace, sizeof told);
    if (bytes.size() < std::max<size_t>(kHeader, told))
        throw Unreadable("is cut off: of " + std::to_string(told) + " bytes, " +
                         std::to_string(told - std::min<size_t>(told, bytes.size())) + " are missing");
}

} // namespace

Reading readObj(const std::string& path, Reporter& reporter)
{
    reporter.stage("reading the file", 0.0, 0.7);
    std::vector<std::string> refused = takeLibraries(path, reporter);
    const Handle(RWObj_CafReader) reader = new RWObj_CafReader;
    // Coordinates have no unit; following common practice they are taken as millimetres with y up.
    reader->SetFileLengthUnit(kMillimetre);
    Reading reading = readMesh(*reader, "OBJ", path, "holds no triangles", reporter);
    for (int i = 1; i <= reader->ExternalFiles().Extent(); ++i)
        if (const char* other = reader->ExternalFiles()(i).ToCString(); !liesBeside(path, other))
            refused.push_back(other);
    for (const std::string& other : refused)
        reading.warnings.push_back(refusalOf(other) + ", which was not read");
    if (MappedFile(path).bytes().back() != '\n')
        reading.warnings.push_back("ends in the middle of a line, and may be cut off");
    return reading;
}

Reading readGltf(const std::string& path, bool binary, Reporter& reporter)
{
    reporter.stage("reading the file", 0.0, 0.7);
    std::string ifEmpty = "holds no triangles";
    bool complete = true;
    {
        const MappedFile file(path);
        if (binary)
            checkComplete(file.bytes());
        const std::string_view json = jsonOf(file.bytes(), binary);
        checkGltfNodes(json);
        complete = !mayReferToFiles(json);
        for (const char* extension : {"KHR_draco_mesh_compression", "EXT_meshopt_compression"})
            if (holds(json, extension))
                ifEmpty = std::string("is compressed with ") + extension + ", which can't be read";
    }
    const Handle(RWGltf_CafReader) probe = new RWGltf_CafReader;
    if (!complete) {
        // The files that it refers to are known before any of them is read.
        const KernelMessages unheard;
        probe->ProbeHeader(path.c_str());
    }
    for (int i = 1; i <= probe->ExternalFiles().Extent(); ++i) {
        const std::string file = probe->ExternalFiles()(i).ToCString();
        if (!liesBeside(path, file))
            throw Unreadable(refusalOf(file));
        reporter.dependsOn(file);
    }
    const Handle(RWGltf_CafReader) reader = new RWGltf_CafReader;
    reader->SetParallel(true);
    return readMesh(*reader, binary ? "GLB" : "glTF", path, ifEmpty, reporter);
}

} // namespace Vs::Translate
