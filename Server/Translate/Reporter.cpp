#include "Server/Translate/Reporter.h"

#include "Server/Base/SystemCalls.h"

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace Vs::Translate {

namespace {

// The smallest step worth a message.
constexpr double kLeastStep = 0.002;

} // namespace

void Reporter::stage(const std::string& step, double from, double to)
{
    {
        const std::lock_guard lock(m_mutex);
        m_step = step;
        m_from = from;
        m_to = to;
        m_told = from;
    }
    send({Exchange::WorkerMessage::Kind::Progress, from, step});
}

void Reporter::progress(double fraction)
{
    Exchange::WorkerMessage message;
    {
        const std::lock_guard lock(m_mutex);
        message.fraction = m_from + (m_to - m_from) * fraction;
        if (message.fraction < m_told + kLeastStep)
            return;
        m_told = message.fraction;
        message.text = m_step;
    }
    send(message);
}

bool Reporter::advance(double fraction)
{
    Exchange::WorkerMessage message;
    {
        const std::lock_guard lock(m_mutex);
        message.fraction = m_told + (m_to - m_told) * fraction;
        if (message.fraction < m_told + kLeastStep)
            return false;
        m_told = message.fraction;
        message.text = m_step;
    }
    send(message);
    return true;
}

void Reporter::send(const Exchange::WorkerMessage& message)
{
    const std::string frame = Exchange::encode(message);
    const std::lock_guard lock(m_mutex);
    if (!writeAll(Exchange::kWorkerPipe, frame))
        std::_Exit(3); // Nobody listens any more.
}

} // namespace Vs::Translate
