#include "Server/Translate/IgesReader.h"

#include "Server/Base/SystemCalls.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Salvage/IgesRules.h"
#include "Server/Translate/Salvage/IgesSalvage.h"

#include <IGESCAFControl_Reader.hxx>
#include <IGESData_IGESEntity.hxx>
#include <IGESData_IGESModel.hxx>
#include <Interface_InterfaceModel.hxx>
#include <TopExp_Explorer.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <future>
#include <sys/mman.h>
#include <unistd.h>

namespace Vs::Translate {

namespace {

// A line ends with its section's letter and its number in the section, seven digits wide. Counted from the
// end, because text that isn't plain ASCII shifts the columns.
constexpr size_t kLineTail = 8;

struct Section
{
    char letter;
    const char* name;
    long lines = 0;
};

long numberIn(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// The last line says how many lines each section has. The kernel doesn't check: it takes what is there, as if
// that were everything. Empty if all are there.
std::string whatIsCutOff(std::string_view text)
{
    Section sections[] = {{'S', "start"}, {'G', "global"}, {'D', "directory"}, {'P', "parameter"}};
    // The other two forms of the format, compressed and binary, start with another letter.
    if (text.size() > 72 && text[72] != 'S')
        return {};
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
            line.remove_suffix(1);
        if (line.size() < kLineTail)
            continue;
        const char letter = line[line.size() - kLineTail];
        for (Section& section : sections)
            section.lines += section.letter == letter;
        if (letter != 'T')
            continue;
        // Four fields of a letter and seven digits, in the order of the sections.
        for (size_t i = 0; i < std::size(sections); ++i) {
            const Section& section = sections[i];
            const long told = line.size() < (i + 1) * kLineTail || line[i * kLineTail] != section.letter
                                  ? 0
                                  : numberIn(line.substr(i * kLineTail + 1, kLineTail - 1));
            if (section.lines < told)
                return "is cut off: of the " + std::to_string(told) + " lines of its " + section.name +
                       " section, " + std::to_string(told - section.lines) + " are missing";
        }
        return {};
    }
    return "is cut off: the line that ends an IGES file is missing";
}

using Reader = std::shared_ptr<IGESCAFControl_Reader>;

Reader makeReader()
{
    const auto reader = std::make_shared<IGESCAFControl_Reader>();
    reader->SetColorMode(true);
    reader->SetNameMode(true);
    reader->SetLayerMode(true);
    reader->SetReadVisible(true);
    return reader;
}

/// Loads a text as if it were a file: the kernel's reader takes nothing but paths.
bool load(IGESCAFControl_Reader& reader, std::string_view text)
{
    const int file = memfd_create("sound", MFD_CLOEXEC);
    const bool isLoaded =
        file >= 0 && writeAll(file, text) &&
        reader.ReadFile(("/proc/self/fd/" + std::to_string(file)).c_str()) == IFSelect_RetDone;
    close(file);
    return isLoaded;
}

/// Whether the kernel couldn't read one of the entities.
bool lacksAnything(const IGESCAFControl_Reader& reader)
{
    const Handle(Interface_InterfaceModel) model = reader.WS()->Model();
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (model->IsErrorEntity(i))
            return true;
    return false;
}

/// The faces of which the kernel made something; it leaves out the others without a word.
size_t readFaces(const IGESCAFControl_Reader& reader)
{
    const Handle(Interface_InterfaceModel) model = reader.WS()->Model();
    const Handle(Transfer_TransientProcess) process = reader.WS()->TransferReader()->TransientProcess();
    size_t faces = 0;
    for (int i = 1; i <= model->NbEntities(); ++i) {
        const auto entity = Handle(IGESData_IGESEntity)::DownCast(model->Value(i));
        faces += !entity.IsNull() && Salvage::isFaceType(entity->TypeNumber()) &&
                 !TransferBRep::ShapeResult(process, entity).IsNull();
    }
    return faces;
}

bool transfer(IGESCAFControl_Reader& reader, Reading& reading, Reporter& reporter)
{
    reporter.stage("transferring the shapes", 0.3, 0.65);
    reading.model = std::make_unique<Kernel::XdeModel>();
    Handle(TDocStd_Document) document = reading.model->document();
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    return reader.Transfer(document, progress->Start());
}

std::string lostOf(size_t read, size_t all)
{
    return std::to_string(all - read) + " of " + std::to_string(all) + (all == 1 ? " face" : " faces");
}

/// Reads the file as it is. Whether the kernel has understood all that it holds; otherwise nothing of it
/// counts, except that it is kept where it isn't damaged. `fault` is why it can't be read.
bool readWhole(const std::string& path, std::string_view file, const ReadingOptions& options,
               Reading& reading, Salvage::SalvagedIges& sound, std::string& fault, Reporter& reporter)
{
    reporter.stage("reading the file", 0.0, 0.3);
    // It takes a tenth of the time of the kernel's reading.
    std::future<Salvage::SalvagedIges> looked =
        std::async(std::launch::async, [file] { return Salvage::salvageIges(file); });
    const Reader reader = makeReader();
    fault = whatIsCutOff(file);
    if (reader->ReadFile(path.c_str()) != IFSelect_RetDone)
        fault = "isn't a valid IGES file: its text can't be understood";
    sound = looked.get();
    if (sound.wasDamaged &&
        (!fault.empty() || !sound.isInOrder || sound.soundFaces < sound.faces || lacksAnything(*reader)))
        return false;
    if (!fault.empty())
        throw Unreadable(fault);
    const bool isTransferred = transfer(*reader, reading, reporter);
    const size_t faces = isTransferred ? readFaces(*reader) : 0;
    if (sound.wasDamaged && faces < sound.faces)
        return false;
    if (!isTransferred)
        throw Unreadable("holds no shapes that can be read");
    if (faces < sound.faces) {
        reading.warnings.push_back("has " + lostOf(faces, sound.faces) + " that can't be read");
        if (options.isStrict)
            throw Unreadable(reading.warnings.back());
    }
    return true;
}

/// The numbers of the faces that are better left out, if they are to be looked for.
std::unordered_set<uint32_t> unreadableFaces(const ReadingOptions& options, Reporter& reporter)
{
    const auto trials = std::dynamic_pointer_cast<Salvage::FaceTrials>(options.helpers);
    if (!trials)
        return {};
    reporter.stage("looking for the faces that can't be read", 0.0, 0.3);
    auto found = trials->unreadable([&](double fraction) { reporter.progress(fraction); });
    if (!found)
        throw Unreadable("has no face that can be read");
    return std::move(*found);
}

} // namespace

Reading readIges(const std::string& path, const ReadingOptions& options, Reporter& reporter)
{
    Reading reading;
    const MappedFile file(path);
    Salvage::SalvagedIges sound;
    std::string fault;
    if (options.salvage) {
        const std::unordered_set<uint32_t> without = unreadableFaces(options, reporter);
        reporter.stage("looking for what is sound", 0.0, 0.0);
        sound = Salvage::salvageIges(file.bytes(), without);
        if (!sound.wasDamaged)
            throw Unreadable("has no damage that can be seen");
    } else if (readWhole(path, file.bytes(), options, reading, sound, fault, reporter)) {
        return reading;
    }
    if (options.isStrict)
        throw Unreadable(!fault.empty()
                             ? fault
                             : "is damaged" + (sound.losses.empty() ? "" : ": it lacks " + sound.losses));
    reporter.stage("reading what is sound", 0.0, 0.3);
    const Reader reader = makeReader();
    if (sound.text.empty() || !load(*reader, sound.text))
        throw Unreadable(fault.empty() ? "is damaged, and nothing that could be shown is sound" : fault);
    // Another version may make more of it.
    reporter.dependsOn({});
    reading.warnings = {"is damaged, and was read without what is unsound in it"};
    reading.warnings.insert(reading.warnings.end(), sound.warnings.begin(), sound.warnings.end());
    if (!transfer(*reader, reading, reporter))
        throw Unreadable(fault.empty() ? "holds no shapes that can be read" : fault);
    if (const size_t faces = readFaces(*reader); faces < sound.soundFaces)
        reading.warnings.push_back("has " + lostOf(faces, sound.soundFaces) + " that can't be read");
    return reading;
}

bool readSoundIges(std::string_view file, const std::unordered_set<uint32_t>& without,
                   Kernel::XdeModel& model, Salvage::FaceNumbers& numbers)
{
    const Salvage::SalvagedIges sound = Salvage::salvageIges(file, without);
    const Reader reader = makeReader();
    Handle(TDocStd_Document) document = model.document();
    if (sound.text.empty())
        return true;
    if (!load(*reader, sound.text) || !reader->Transfer(document))
        return false;
    const auto iges = Handle(IGESData_IGESModel)::DownCast(reader->WS()->Model());
    const Handle(Transfer_TransientProcess) process = reader->WS()->TransferReader()->TransientProcess();
    for (int i = 1; i <= iges->NbEntities(); ++i)
        if (Salvage::isFaceType(iges->Entity(i)->TypeNumber()))
            for (TopExp_Explorer each(TransferBRep::ShapeResult(process, iges->Value(i)), TopAbs_FACE);
                 each.More(); each.Next())
                numbers.emplace(each.Current().TShape().get(), uint32_t(iges->DNum(iges->Entity(i))));
    return true;
}

} // namespace Vs::Translate
