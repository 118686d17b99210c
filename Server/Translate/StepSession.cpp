#include "Server/Translate/StepSession.h"

#include "Server/Translate/Abridged.h"
#include "Server/Translate/ScannerInput.h"
#include "Server/Translate/StepNumbers.h"

#include <StepData_StepModel.hxx>
#include <XSControl_WorkSession.hxx>

#include <istream>
#include <unordered_set>

namespace Vs::Translate {

std::shared_ptr<StepSession> StepSession::make()
{
    auto session = std::make_shared<StepSession>();
    session->SetColorMode(true);
    session->SetNameMode(true);
    session->SetGDTMode(false);
    session->SetLayerMode(true);
    session->SetPropsMode(false);
    return session;
}

bool StepSession::load(const std::string& path, std::string_view bytes, const ReportingBuffer::Report& report)
{
    const std::string shorter = abridged(bytes);
    ReportingBuffer buffer(shorter.empty() ? bytes : shorter, report);
    std::istream stream(&buffer);
    const ScannerInput input(stream);
    return ChangeReader().ReadStream(path.c_str(), stream) == IFSelect_RetDone;
}

bool StepSession::lacksAnything() const
{
    const auto model = Handle(StepData_StepModel)::DownCast(Reader().WS()->Model());
    // Where two have the same number, only one of them is meant; the kernel takes both.
    std::unordered_set<int> numbers;
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (model->IsErrorEntity(i) || model->IsUnknownEntity(i) || hasAbsurdNumber(model->Value(i)) ||
            !numbers.insert(model->IdentLabel(model->Value(i))).second)
            return true;
    return false;
}

} // namespace Vs::Translate
