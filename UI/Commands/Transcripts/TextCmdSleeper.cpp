#include "UI/Commands/Text/DirectTextCommand.h"

#include <QThread>

#include <boost/lexical_cast.hpp>

#include <cstdint>

namespace Vu::Commands {
namespace {

constexpr DirectTextRow kSleep = {L"Sleeper", L"Sleep", L"<delay in milli seconds> Sleep for some time.",
                                  "%d", false};

/// Transcripts wait with it for a slow window.
class TextCmdSleeperSleep : public DirectTextCommand<kSleep>
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"The delay in milliseconds is missing."};
        const std::wstring& delay = parameters[0];
        // The cast takes a minus sign for an unsigned number and would sleep for weeks.
        if (delay.front() == L'-')
            throw boost::bad_lexical_cast();
        QThread::msleep(boost::lexical_cast<uint32_t>(delay));
        return {0, L"Sleep " + delay + L" ms."};
    }
};

TextCmdSleeperSleep theSleep;

} // namespace
} // namespace Vu::Commands
