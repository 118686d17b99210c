#include "UI/Commands/Transcripts/ValidationDialog.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Commands/Transcripts/TranscriptLines.h"

#include <utility>

namespace Vu {

using Commands::insertTranscriptLine;

ValidationDialog* ValidationDialog::get()
{
    static auto* const dialog = new ValidationDialog;
    return dialog;
}

ValidationDialog::ValidationDialog()
{
    Vs::TranscriptMgr::get()->whenRecordingEnds([this] { recordingEnds(); });
}

ValidationWindow* ValidationDialog::target() const
{
    const Maker maker = m_makers[static_cast<size_t>(m_kind)];
    return maker ? maker() : nullptr;
}

void ValidationDialog::show(bool visible)
{
    if (!Vs::TranscriptMgr::get()->recording())
        return;
    if (ValidationWindow* window = target()) {
        window->setShown(visible);
        m_shown = visible;
    }
}

/// The window has no close button, so it must not outlive what it belongs to.
void ValidationDialog::recordingEnds()
{
    if (m_started)
        endValidation();
    Vs::TranscriptMgr::get()->recordSmoothCameraChange(false);
    if (!std::exchange(m_shown, false))
        return;
    if (ValidationWindow* window = target())
        window->setShown(false);
}

bool ValidationDialog::needToShow() const
{
    return UIBaseOptionGroup::get()->showValidationDialog();
}

void ValidationDialog::needToShow(bool value)
{
    UIBaseOptionGroup::get()->showValidationDialog(value);
    show(value);
}

void ValidationDialog::startNormalValidation()
{
    m_kind = kNormal;
    m_started = Vs::TranscriptMgr::get()->recording();
    Vs::TranscriptMgr::get()->recordSmoothCameraChange(false);
    show(needToShow());
}

void ValidationDialog::startPerformanceValidation()
{
    m_kind = kPerformance;
    m_started = Vs::TranscriptMgr::get()->recording();
    // A drag must bring as many pictures when it is replayed as it did.
    Vs::TranscriptMgr::get()->recordSmoothCameraChange(m_started);
    insertTranscriptLine(L"Performance.StartPerformanceValidation");
    show(needToShow());
}

void ValidationDialog::endValidation()
{
    m_started = false;
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
