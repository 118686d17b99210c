#pragma once

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandObserver.h"

#include <functional>
#include <string>

namespace Vu {

/// Gives the text line equivalent to what the user has just done by hand: run a command, opened its panel,
/// set one of its inputs, ended it. Mouse navigation in the view has no line of its own.
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
