#include "UI/Base/Command/CommandInputSet.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/Info.h"

#include <algorithm>

namespace Vu {

CommandInputSet* CommandInputSet::make(CommandBase* command)
{
    Vs::require(command != nullptr, "inputs are those of a command");
    return new CommandInputSet(command);
}

CommandInputSet::~CommandInputSet()
{
    for (const auto& input : m_inputs)
        CommandInputEventSource::get()->forget(input.get());
}

void CommandInputSet::commandEnded()
{
    for (const auto& input : m_inputs)
        input->commandEnded();
}

bool CommandInputSet::valid() const
{
    return std::all_of(m_inputs.begin(), m_inputs.end(), [](const auto& input) { return input->valid(); });
}

CommandInputBase* CommandInputSet::findInput(std::wstring_view key) const
{
    for (const auto& input : m_inputs)
        if (input->info() && input->info()->key() == key)
            return input.get();
    return nullptr;
}

void CommandInputSet::fire(CommandInputEvent* event)
{
    Vs::require(event && event->commandInput()->commandInputSet() == this, "a set tells of its own inputs");
    // The sites may end the command, and the set with it.
    CommandInUse inUse(m_command);
    m_source.fire(&CommandInputSetEventSite::commandInputChanged, event);
    CommandInputEventSource::get()->fire(event);
}

void CommandInputSet::fireExecute(CommandInputEvent* event)
{
    CommandInUse inUse(m_command);
    m_source.fire(&CommandInputSetEventSite::commandInputSetExecute, event);
}

CommandInputEventSource* CommandInputEventSource::get()
{
    static CommandInputEventSource* const source = new CommandInputEventSource;
    return source;
}

void CommandInputEventSource::subscribe(CommandInputEventSite* site, CommandInputBase* input)
{
    Vs::assertMainThread();
    Vs::require(site != nullptr, "a site that subscribes is there");
    const auto same = [&](const Subscription& s) { return s.site == site && s.input == input; };
    if (std::none_of(m_subscriptions.begin(), m_subscriptions.end(), same))
        m_subscriptions.push_back({site, input});
}

void CommandInputEventSource::unsubscribe(CommandInputEventSite* site, CommandInputBase* input)
{
    for (Subscription& subscription : m_subscriptions)
        if (subscription.site == site && subscription.input == input)
            subscription.site = nullptr;
    if (m_depth == 0)
        std::erase_if(m_subscriptions, [](const Subscription& s) { return !s.site; });
}

void CommandInputEventSource::forget(const CommandInputBase* input)
{
    for (Subscription& subscription : m_subscriptions)
        if (subscription.input == input)
            subscription.site = nullptr;
    if (m_depth == 0)
        std::erase_if(m_subscriptions, [](const Subscription& s) { return !s.site; });
}

void CommandInputEventSource::fire(CommandInputEvent* event)
{
    // By index, and with marks in place of removals: meanwhile a site may subscribe, unsubscribe or end the
    // command.
    ++m_depth;
    const CommandInputBase* const input = event->commandInput();
    for (size_t i = 0, count = m_subscriptions.size(); i < count; ++i) {
        const Subscription subscription = m_subscriptions[i];
        if (subscription.site && (!subscription.input || subscription.input == input))
            subscription.site->onCommandInputEvent(event);
    }
    if (--m_depth == 0)
        std::erase_if(m_subscriptions, [](const Subscription& s) { return !s.site; });
}

CommandInputSetEventSource* CommandInputSetEventSource::get()
{
    // Never destroyed: commands may still end while the process is shutting down.
    static auto* const source = new CommandInputSetEventSource;
    return source;
}

void CommandInputSetEventSource::subscribe(CommandInputSetEventSite* site, CommandInputSet* set)
{
    Vs::require(set != nullptr, "a set that is listened to is there");
    set->m_source.subscribe(site);
}

void CommandInputSetEventSource::unsubscribe(CommandInputSetEventSite* site, CommandInputSet* set)
{
    set->m_source.unsubscribe(site);
}

} // namespace Vu
