#include "UI/Base/Session/Private/ClickChoice.h"

#include "Server/Component/ComponentIds.h"
#include "UI/Base/View/MouseEvents.h"

#include <algorithm>
#include <string>

namespace Vu {
namespace {

constexpr auto kComponent = Vs::ObjectPath::Leaf::Component;

const Vs::LogicalSelection* inModel(const ClickChoice::Object& object)
{
    return Vs::cast<Vs::LogicalSelection>(object.get());
}

} // namespace

bool clickAdds(unsigned modifiers)
{
    const unsigned keys = modifiers & (kShiftModifier | kControlModifier);
    return keys == kShiftModifier || keys == kControlModifier;
}

bool clickClimbs(unsigned modifiers)
{
    constexpr unsigned kBoth = kShiftModifier | kControlModifier;
    return (modifiers & kBoth) == kBoth;
}

bool isSolid(const Vs::Selection& selection)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
    return object && object->path().leaf == Vs::ObjectPath::Leaf::Solid;
}

ClickChoice::Object ClickChoice::holder(const Objects& objects) const
{
    const Object found = solid(objects);
    return found ? found : componentAround(*objects.front());
}

ClickChoice::Object ClickChoice::solid(const Objects& objects) const
{
    const auto* first = inModel(objects.front());
    for (const Object& each : objects)
        if (const auto* object = inModel(each); object && first && isSolid(*each) &&
                                                object->componentId() == first->componentId() &&
                                                !m_taken.contains(*each))
            return each;
    return nullptr;
}

ClickChoice::Object ClickChoice::componentAround(const Vs::Selection& selection) const
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
    for (std::string id = object ? object->componentId() : std::string(); !id.empty();
         id = Vs::parentId(id)) {
        Object holder(new Vs::LogicalSelection(object->asset(), id, nullptr));
        if (!m_taken.contains(*holder) && m_accepts(holder))
            return holder;
    }
    return nullptr;
}

ClickChoice::Object ClickChoice::componentOrPart(const Objects& objects, bool adds) const
{
    const auto* first = inModel(objects.front());
    const auto component = std::find_if(objects.begin(), objects.end(), [&](const Object& each) {
        const auto* object = inModel(each);
        return first && object && object->path() == Vs::ObjectPath{first->componentId(), kComponent};
    });
    // An edge at the outline is taken also where the pointer is just beside its component.
    Object whole = component != objects.end() ? *component
                   : first ? Object(new Vs::LogicalSelection(first->asset(), first->componentId(), nullptr))
                           : nullptr;
    if (!whole || !m_accepts(whole))
        return objects.front();
    const auto& taken = m_taken.selections();
    const bool wantsPart = std::any_of(taken.begin(), taken.end(), [&](const Object& each) {
        const auto* object = inModel(each);
        return object &&
               (adds ? object->path().leaf != kComponent : object->componentId() == first->componentId());
    });
    return wantsPart ? objects.front() : whole;
}

} // namespace Vu
