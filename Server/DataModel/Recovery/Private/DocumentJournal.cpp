#include "Server/DataModel/Recovery/Private/DocumentJournal.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Recovery/Private/DocumentDigests.h"
#include "Server/DataModel/Recovery/Private/StepJournal.h"

#include <algorithm>
#include <ctime>

namespace Vs::Recovery {

namespace {

constexpr double kMostDigest = 1e-3; // seconds of the processor
constexpr int kMostSlow = 2;         // the first time all bodies are new
constexpr size_t kMostParts = 1000;

double processorTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Takes the parts of a tree from what is left of them; false once there are too many.
bool takeParts(const Component& parent, size_t& left)
{
    return std::all_of(parent.children.begin(), parent.children.end(),
                       [&](const auto& child) { return left > 0 && left-- > 0 && takeParts(*child, left); });
}

bool isSmall(const Document& document)
{
    size_t left = kMostParts;
    bool small = true;
    for (unsigned i = 0; i < document.assets() && small; ++i)
        small = takeParts(*document.asset(i)->components(), left);
    return small;
}

} // namespace

void DocumentJournal::keep(const Document& document, const std::wstring& line)
{
    if (m_ended)
        return;
    StepJournal::Step step;
    if (!line.empty() && m_slow < kMostSlow && isSmall(document)) {
        const double begin = processorTime();
        step = {line, digestsOf(document, m_bodies)};
        m_bodies.forgetUnused();
        m_slow = processorTime() - begin > kMostDigest ? m_slow + 1 : 0;
    }
    if (m_slow == kMostSlow)
        m_bodies = {};
    m_ended = !StepJournal::append(m_folder, m_number, step) || step.line.empty();
}

} // namespace Vs::Recovery
