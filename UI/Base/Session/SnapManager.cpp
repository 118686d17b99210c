#include "UI/Base/Session/SnapManager.h"

#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/View/SnapEvents.h"

#include <cmath>

namespace Vu::Inference {

namespace {

constexpr double kUsualIncrement = 1;

bool isIncrement(double value)
{
    return std::isfinite(value) && value > 0;
}

template <class T>
void change(Vs::Option<T>& option, const T& value)
{
    if (option() == value)
        return;
    option(value);
    SnapEvent event(ActiveAssetUtils::asset());
    SnapEventSource::get()->fireSnapSettingsChanged(&event);
}

} // namespace

SnapManager::SnapManager() : Implements("Snap") {}

SnapManager* SnapManager::get()
{
    static auto* const manager = new SnapManager;
    return manager;
}

void SnapManager::adaptiveSnap(bool value)
{
    change(m_adaptive, value);
}

double SnapManager::snapIncrement() const
{
    // The file may have been written by hand.
    const double value = m_increment();
    return isIncrement(value) ? value : kUsualIncrement;
}

void SnapManager::snapIncrement(double value)
{
    if (isIncrement(value))
        change(m_increment, value);
}

void SnapManager::enableDistanceSnapping(bool value)
{
    change(m_distances, value);
}

} // namespace Vu::Inference
