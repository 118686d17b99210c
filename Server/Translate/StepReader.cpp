#include "Server/Translate/StepReader.h"

#include "Server/Translate/Beside.h"
#include "Server/Translate/ExpectedWork.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Salvage/Salvage.h"
#include "Server/Translate/Shares/BoundShares.h"
#include "Server/Translate/Shares/SmoothEdges.h"
#include "Server/Translate/StepActor.h"
#include "Server/Translate/StepReferences.h"
#include "Server/Translate/StepSession.h"

#include <STEPCAFControl_ExternFile.hxx>
#include <Standard_Failure.hxx>
#include <StepData_StepModel.hxx>
#include <StepShape_ConnectedFaceSet.hxx>
#include <StepShape_Face.hxx>
#include <StepShape_HArray1OfFace.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <TopExp_Explorer.hxx>
#include <TransferBRep.hxx>
#include <Transfer_Binder.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <istream>

namespace Vs::Translate {

namespace {

// While the transfer runs, looks for shapes that it has finished. The kernel reports its progress on the
// transferring thread, between one item and the next; whatever has a representation bound to it is complete
// then: each of its solids was healed before, and what remains only places it in assemblies.
class TransferWatch : public KernelProgress
{
public:
    TransferWatch(Reporter& reporter, StepSession& reader, EarlyMeshing& meshing)
        : KernelProgress(reporter), m_reader(reader), m_meshing(meshing)
    {
    }
    void Show(const Message_ProgressScope& scope, const Standard_Boolean force) override
    {
        KernelProgress::Show(scope, force);
        const Handle(XSControl_TransferReader)& transfer = m_reader.Reader().WS()->TransferReader();
        const Handle(Transfer_TransientProcess) process =
            transfer.IsNull() ? nullptr : transfer->TransientProcess();
        for (; !process.IsNull() && m_seen < process->NbMapped(); ++m_seen) {
            // A reference to something missing from the file is mapped as well, as nothing.
            const Handle(Standard_Transient)& entity = process->Mapped(m_seen + 1);
            if (!entity.IsNull() && entity->IsKind(STANDARD_TYPE(StepShape_ShapeRepresentation)))
                mesh(TransferBRep::ShapeResult(process->MapItem(m_seen + 1)));
        }
    }

private:
    void mesh(const TopoDS_Shape& shape)
    {
        if (!shape.IsNull() && TopExp_Explorer(shape, TopAbs_FACE).More())
            m_meshing.add(shape);
    }

    StepSession& m_reader;
    EarlyMeshing& m_meshing;
    int m_seen = 0;
};

// Where parts in other files come from. They have separate files, which the kernel doesn't report.
void tellReferences(const StepReferences& references, StepSession& reader, const std::string& path,
                    Reading& reading, Reporter& reporter)
{
    std::vector<std::string> refused = references.refused;
    for (const std::string& name : references.beside)
        reporter.dependsOn((std::filesystem::path(path).parent_path() / name).string());
    for (NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>::Iterator each(
             reader.ExternFiles());
         each.More(); each.Next()) {
        const StepReferences further = takeReferences(each.Value()->GetWS(), path);
        refused.insert(refused.end(), further.refused.begin(), further.refused.end());
        if (!further.beside.empty() || !further.refused.empty())
            reporter.dependsOn({});
    }
    for (const std::string& name : refused)
        reading.warnings.push_back(refusalOf(name) + ", which was not read");
}

bool holds(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return text.find(word) != text.npos; });
}

/// Loads a text, reporting it as part of the current step.
bool load(StepSession& reader, const std::string& path, std::string_view bytes, Reporter& reporter)
{
    return reader.load(path, bytes, [&](double fraction) { reporter.progress(fraction); });
}

/// A file as far as the kernel has loaded it.
struct Loaded
{
    std::shared_ptr<StepSession> reader = StepSession::make();
    std::string salvaged; ///< What was loaded instead of the file's own text; empty for none.
};

/// Loads the file, or its sound content.
Loaded loadSound(const std::string& path, std::string_view file, const ReadingOptions& options,
                 Reading& reading, Reporter& reporter)
{
    Loaded loaded;
    bool isWhole = false;
    if (!options.salvage) {
        reporter.stage("reading the file", 0.0, 0.35);
        isWhole = load(*loaded.reader, path, file, reporter);
        if (isWhole && !loaded.reader->lacksAnything())
            return loaded;
    }
    std::unordered_set<uint32_t> without;
    if (const auto trials = std::dynamic_pointer_cast<Salvage::FaceTrials>(options.helpers)) {
        reporter.stage("looking for the faces that can't be read", 0.0, 0.3);
        auto found = trials->unreadable([&](double fraction) { reporter.progress(fraction); });
        if (!found)
            throw Unreadable("has no face that can be read");
        without = std::move(*found);
    }
    reporter.stage("looking for what is sound", 0.0, 0.0);
    Salvage::Salvaged sound = Salvage::salvage(file, without);
    if (isWhole && !sound.wasDamaged)
        return loaded;
    if (options.salvage && !sound.wasDamaged) {
        // The cause of the first crash may have been its shares.
        reporter.stage("reading the file", 0.0, 0.35);
        if (Shares::ShareReaders::concern(path) && load(*loaded.reader, path, file, reporter))
            return loaded;
        throw Unreadable("has no damage that can be seen");
    }
    if (options.isStrict && sound.wasDamaged)
        throw Unreadable("is damaged" + (sound.losses.empty() ? "" : ": it lacks " + sound.losses));
    reporter.stage("reading what is sound", 0.0, 0.35);
    loaded.reader = StepSession::make();
    if (sound.text.empty() && isWhole)
        throw Unreadable("is damaged, and nothing that could be shown is sound");
    if (sound.text.empty() || !load(*loaded.reader, path, sound.text, reporter))
        throw Unreadable("isn't a valid STEP file: its text can't be understood");
    // Another version may make more of it.
    reporter.dependsOn({});
    reading.warnings.push_back("is damaged, and was read without what is unsound in it");
    reading.warnings.insert(reading.warnings.end(), sound.warnings.begin(), sound.warnings.end());
    loaded.salvaged = std::move(sound.text);
    return loaded;
}

/// Beyond what any step may take, for shells of many faces: where the faces have no edges in common, the
/// kernel compares each with each.
std::chrono::milliseconds expectedWork(const StepSession& reader)
{
    constexpr double kMany = 1500, kEachPair = 0.002; // ms
    double pairs = 0;
    const Handle(Interface_InterfaceModel) model = reader.Reader().WS()->Model();
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (const auto shell = Handle(StepShape_ConnectedFaceSet)::DownCast(model->Value(i));
            !shell.IsNull() && !shell->CfsFaces().IsNull() && shell->NbCfsFaces() > kMany)
            pairs += double(shell->NbCfsFaces()) * shell->NbCfsFaces();
    return std::chrono::milliseconds(std::llround(pairs * kEachPair));
}

/// The content of shares has been bound and meshed; of the rest, whatever the transfer has finished is meshed
/// meanwhile.
bool transfer(StepSession& reader, Handle(TDocStd_Document) & document, bool isShared, Reading& reading,
              Reporter& reporter)
{
    if (isShared) {
        reporter.stage("transferring the shapes", 0.6, 0.65);
        const Handle(KernelProgress) progress = new KernelProgress(reporter);
        const Shares::WithoutSmoothEdges marked;
        if (!reader.Transfer(document, progress->Start()))
            return false;
        Shares::markSmoothEdges(document, reading.isMeshed);
        return true;
    }
    reporter.stage("transferring the shapes", 0.35, 0.65);
    const ExpectedWork work(reporter, expectedWork(reader));
    reading.early = std::make_unique<EarlyMeshing>();
    const Handle(TransferWatch) progress = new TransferWatch(reporter, reader, *reading.early);
    reader.Reader().WS()->TransferReader()->SetActor(new StepActor);
    return reader.Transfer(document, progress->Start());
}

} // namespace

Reading readStep(const std::string& path, const ReadingOptions& options, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    std::shared_ptr<StepSession> reader;
    bool annotated = false, tessellated = false, isShared = false;
    {
        const MappedFile file(path);
        std::string_view bytes = file.bytes();
        Loaded loaded;
        if (const auto shares = std::dynamic_pointer_cast<Shares::ShareReaders>(options.helpers))
            if ((isShared = Shares::readByShares(*shares, *loaded.reader, path, reading, reporter)))
                bytes = shares->structure(); // All that isn't a solid or a surface.
        if (!isShared) {
            loaded = loadSound(path, file.bytes(), options, reading, reporter);
            bytes = loaded.salvaged.empty() ? bytes : loaded.salvaged;
        }
        reader = loaded.reader;
        annotated = options.annotations && loaded.salvaged.empty() &&
                    holds(bytes.substr(0, 4096), {"AP242", "ap242", "MANAGED_MODEL_BASED"}) &&
                    holds(bytes, {"GEOMETRIC_TOLERANCE", "DIMENSIONAL_SIZE", "DIMENSIONAL_LOCATION", "DATUM",
                                  "DRAUGHTING_CALLOUT", "ANNOTATION"});
        tessellated = holds(bytes, {"TESSELLATED_SOLID(", "TESSELLATED_SHELL(", "TESSELLATED_FACE("});
    }
    Handle(TDocStd_Document) document = reading.model->document();
    if (tessellated)
        reading.ifEmpty = "holds only tessellated geometry, which can't be read";
    const StepReferences references = takeReferences(reader->Reader().WS(), path);
    if (!references.refused.empty())
        reading.ifEmpty = refusalOf(references.refused.front());
    if (!transfer(*reader, document, isShared, reading, reporter))
        throw Unreadable(reading.ifEmpty);
    tellReferences(references, *reader, path, reading, reporter);
    if (tessellated)
        reading.warnings.push_back("holds tessellated geometry beside the rest, which was left out");
    if (annotated)
        reading.later = [reader, document](std::vector<std::string>& warnings) {
            try {
                reader->readAnnotations(document);
            } catch (const Standard_Failure& failure) {
                warnings.push_back(std::string("has annotations that can't be read: ") +
                                   failure.GetMessageString());
            }
        };
    return reading;
}

bool readSoundStep(std::string_view file, const std::unordered_set<uint32_t>& without,
                   Kernel::XdeModel& model, Salvage::FaceNumbers& numbers)
{
    const Salvage::Salvaged sound = Salvage::salvage(file, without);
    const auto session = StepSession::make();
    Handle(TDocStd_Document) document = model.document();
    if (sound.text.empty())
        return true;
    if (!session->load("faces", sound.text, [](double) {}) || !session->Transfer(document))
        return false;
    const auto step = Handle(StepData_StepModel)::DownCast(session->Reader().WS()->Model());
    const Handle(Transfer_TransientProcess) process =
        session->Reader().WS()->TransferReader()->TransientProcess();
    for (int i = 1; i <= step->NbEntities(); ++i)
        if (step->Value(i)->IsKind(STANDARD_TYPE(StepShape_Face)))
            for (TopExp_Explorer each(TransferBRep::ShapeResult(process, step->Value(i)), TopAbs_FACE);
                 each.More(); each.Next())
                numbers.emplace(each.Current().TShape().get(), uint32_t(step->IdentLabel(step->Value(i))));
    return true;
}

} // namespace Vs::Translate
