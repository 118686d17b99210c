#include "UI/Base/Command/TextRows.h"

#include <QThread>

#include <cstdint>

namespace Vu::Commands {
namespace {

constexpr DirectTextRow kSleep = {L"Sleeper", L"Sleep", L"<delay in milli seconds> Sleep for some time.",
                                  "%d", false};

/// Transcripts use it to wait for a slow window.
class TextCmdSleeperSleep : public DirectTextCommand<kSleep>
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"The delay in milliseconds is missing."};
        QThread::msleep(parameters.integer<uint32_t>(0));
        return {0, L"Sleep " + parameters[0] + L" ms."};
    }
};

TextCmdSleeperSleep theSleep;

} // namespace
} // namespace Vu::Commands
