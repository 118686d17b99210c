#include "UI/Commands/Transcripts/PerformanceValidationMgr.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Validation/PerfTestingContext.h"

#include <boost/filesystem/path.hpp>

namespace Vu {

PerformanceValidationMgr::PerformanceValidationMgr() = default;
PerformanceValidationMgr::~PerformanceValidationMgr() = default;

PerformanceValidationMgr* PerformanceValidationMgr::get()
{
    static PerformanceValidationMgr manager;
    return &manager;
}

void PerformanceValidationMgr::startPerformanceValidation()
{
    const boost::filesystem::path script(Vs::TranscriptMgr::get()->replayingScriptFile());
    const std::wstring file = script.filename().wstring();
    const std::wstring name = file.substr(0, file.rfind(L'.'));
    if (!PerfTestingContext::m_bEnabled)
        m_enabler = std::make_unique<Enabler>(name);
    m_context = std::make_unique<PerfTestingContext>(Vs::Strings::narrow(name));
}

void PerformanceValidationMgr::endPerformanceValidation()
{
    m_context.reset();
    m_enabler.reset();
}

} // namespace Vu
