#include "Server/Translate/StepReferences.h"

#include "Server/Translate/Beside.h"

#include <Interface_InterfaceModel.hxx>
#include <StepAP214_AppliedExternalIdentificationAssignment.hxx>
#include <StepBasic_DocumentFile.hxx>
#include <TCollection_HAsciiString.hxx>

#include <algorithm>
#include <filesystem>

namespace Vs::Translate {

namespace {

class Collector
{
public:
    explicit Collector(const std::string& file) : m_file(file) {}

    /// Returns what replaces the name.
    Handle(TCollection_HAsciiString) take(const Handle(TCollection_HAsciiString) & name)
    {
        if (name.IsNull() || name->IsEmpty())
            return name;
        const std::string text = name->ToCString();
        std::string path = text;
        // As other systems write it.
        std::replace(path.begin(), path.end(), '\\', '/');
        const bool beside = liesBeside(m_file, std::filesystem::path(m_file).parent_path() / path);
        std::vector<std::string>& list = beside ? found.beside : found.refused;
        if (std::find(list.begin(), list.end(), text) == list.end())
            list.push_back(text);
        return beside ? name : Handle(TCollection_HAsciiString)(new TCollection_HAsciiString);
    }

    StepReferences found;

private:
    const std::string& m_file;
};

} // namespace

StepReferences takeReferences(const Handle(XSControl_WorkSession) & session, const std::string& file)
{
    Collector collector(file);
    const Handle(Interface_InterfaceModel) model = session.IsNull() ? nullptr : session->Model();
    for (int i = 1; !model.IsNull() && i <= model->NbEntities(); ++i) {
        const Handle(Standard_Transient)& entity = model->Value(i);
        const Handle(Standard_Type)& type = entity->DynamicType();
        if (type == STANDARD_TYPE(StepBasic_DocumentFile)) {
            const auto document = Handle(StepBasic_DocumentFile)::DownCast(entity);
            document->SetId(collector.take(document->Id()));
        } else if (type == STANDARD_TYPE(StepAP214_AppliedExternalIdentificationAssignment)) {
            const auto source = Handle(StepAP214_AppliedExternalIdentificationAssignment)::DownCast(entity);
            source->SetAssignedId(collector.take(source->AssignedId()));
        }
    }
    return std::move(collector.found);
}

} // namespace Vs::Translate
