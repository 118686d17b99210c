#include "UI/Commands/Transcripts/NormalValidationWidget.h"

#include "UI/Commands/Transcripts/ValidationChecks.h"

namespace Vu {

NormalValidationWidget::NormalValidationWidget(const std::wstring& subjectArea, const std::wstring& command,
                                               const std::wstring& options)
{
    Commands::addValidationCheck({subjectArea, command, options});
}

} // namespace Vu
