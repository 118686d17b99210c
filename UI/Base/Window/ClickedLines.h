#pragma once

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandObserver.h"

#include <functional>
#include <string>

namespace Vu {

/// Gives the line of text equivalent to what a person has just done by hand: run a command, opened its panel,
/// given one of its inputs a value, ended it. What the mouse does with the view has no line of its own.
class ClickedLines : private ICommandObserver, private CommandEventSite, private CommandInputEventSite
{
public:
    explicit ClickedLines(std::function<void(const std::wstring& line)> tell);
    ~ClickedLines() override;
    ClickedLines(const ClickedLines&) = delete;
    ClickedLines& operator=(const ClickedLines&) = delete;

private:
    void commandCreated(CommandCreatedEvent* event) override;
    void after(const CommandRun& run) override;
    void onCommandInputEvent(CommandInputEvent* event) override;

    std::function<void(const std::wstring&)> m_tell;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
