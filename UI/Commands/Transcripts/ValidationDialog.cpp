#include "UI/Commands/Transcripts/ValidationDialog.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/UIBaseOptionGroup.h"
#include "UI/Commands/Transcripts/TranscriptLines.h"

namespace Vu {

using Commands::insertTranscriptLine;

ValidationDialog* ValidationDialog::get()
{
    static auto* const dialog = new ValidationDialog;
    return dialog;
}

ValidationDialog::ValidationDialog() : m_needToShow(UIBaseOptionGroup::get()->showValidationDialog()) {}

ValidationWindow* ValidationDialog::target() const
{
    const Maker maker = m_makers[static_cast<size_t>(m_kind)];
    return maker ? maker() : nullptr;
}

void ValidationDialog::show(bool visible)
{
    if (!Vs::TranscriptMgr::get()->recording())
        return;
    if (ValidationWindow* window = target())
        window->setShown(visible);
}

void ValidationDialog::needToShow(bool value)
{
    m_needToShow = value;
    UIBaseOptionGroup::get()->showValidationDialog(value);
    show(value);
}

void ValidationDialog::startNormalValidation()
{
    m_kind = kNormal;
    show(m_needToShow);
}

void ValidationDialog::startPerformanceValidation()
{
    m_kind = kPerformance;
    insertTranscriptLine(L"Performance.StartPerformanceValidation");
    show(m_needToShow);
}

void ValidationDialog::endValidation()
{
    show(false);
    if (m_kind != kPerformance)
        return;
    endLastPerformanceStartedMetrics();
    insertTranscriptLine(L"Performance.EndPerformanceValidation");
}

void ValidationDialog::endLastPerformanceStartedMetrics()
{
    if (m_kind != kPerformance)
        return;
    if (ValidationWindow* window = target())
        window->finishStartedMetrics();
}

} // namespace Vu
