#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Readers.h"

#include <Interface_Static.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <XSControl_WorkSession.hxx>

#include <istream>

namespace Vs::Translate {

namespace {

// The kernel reads annotations only in one go with everything else; apart, their failure can't cost the
// geometry.
class StepReader : public STEPCAFControl_Reader
{
public:
    void readAnnotations(Handle(TDocStd_Document) document) { ReadGDTs(Reader().WS(), document); }
};

bool holds(std::string_view text, std::initializer_list<std::string_view> words)
{
    for (const std::string_view word : words)
        if (text.find(word) != std::string_view::npos)
            return true;
    return false;
}

} // namespace

Reading readStep(const std::string& path, bool annotations, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    const auto reader = std::make_shared<StepReader>();
    reader->SetColorMode(true);
    reader->SetNameMode(true);
    reader->SetGDTMode(false);
    reader->SetLayerMode(false);
    reader->SetPropsMode(false);

    bool annotated = false, tessellated = false;
    {
        const MappedFile file(path);
        reporter.stage("reading the file", 0.0, 0.35);
        ReportingBuffer buffer(file.bytes(), reporter);
        std::istream stream(&buffer);
        const IFSelect_ReturnStatus status = reader->ChangeReader().ReadStream(path.c_str(), stream);
        if (status != IFSelect_RetDone)
            throw Unreadable("isn't a valid STEP file: its text can't be understood");
        annotated = annotations &&
                    holds(file.bytes().substr(0, 4096), {"AP242", "ap242", "MANAGED_MODEL_BASED"}) &&
                    holds(file.bytes(), {"GEOMETRIC_TOLERANCE", "DIMENSIONAL_SIZE", "DIMENSIONAL_LOCATION",
                                         "DATUM", "DRAUGHTING_CALLOUT", "ANNOTATION"});
        tessellated = holds(file.bytes(), {"TESSELLATED_SOLID(", "TESSELLATED_SHELL(", "TESSELLATED_FACE("});
    }
    reporter.stage("transferring the shapes", 0.35, 0.65);
    Handle(TDocStd_Document) document = reading.model->document();
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (tessellated)
        reading.ifEmpty = "holds only tessellated geometry, which can't be read";
    if (!reader->Transfer(document, progress->Start()))
        throw Unreadable(reading.ifEmpty);
    if (tessellated)
        reading.warnings.push_back("holds tessellated geometry beside the rest, which was left out");
    if (annotated)
        reading.later = [reader, document, &warnings = reading.warnings]() {
            try {
                reader->readAnnotations(document);
            } catch (const Standard_Failure& failure) {
                warnings.push_back(std::string("has annotations that can't be read: ") +
                                   failure.GetMessageString());
            }
        };
    reading.keep = reader;
    return reading;
}

} // namespace Vs::Translate
