#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace Vs::Exchange {

namespace {

constexpr uint32_t kFixedPart = 1 + sizeof(double);
// A worker that claims to have more to say than this is sending garbage.
constexpr uint32_t kLongestMessage = 1 << 20;

} // namespace

std::string encode(const WorkerMessage& message)
{
    const std::string_view text = std::string_view(message.text).substr(0, kLongestMessage - kFixedPart);
    const uint32_t length = kFixedPart + static_cast<uint32_t>(text.size());
    std::string frame(sizeof length + kFixedPart, '\0');
    std::memcpy(frame.data(), &length, sizeof length);
    frame[sizeof length] = static_cast<char>(message.kind);
    std::memcpy(frame.data() + sizeof length + 1, &message.fraction, sizeof message.fraction);
    frame.append(text);
    return frame;
}

void WorkerMessageReader::add(std::string_view bytes)
{
    m_bytes.erase(0, std::exchange(m_taken, 0));
    m_bytes.append(bytes);
}

std::optional<WorkerMessage> WorkerMessageReader::next()
{
    const std::string_view bytes = std::string_view(m_bytes).substr(m_taken);
    uint32_t length;
    if (m_broken || bytes.size() < sizeof length)
        return std::nullopt;
    std::memcpy(&length, bytes.data(), sizeof length);
    if (length < kFixedPart || length > kLongestMessage) {
        m_broken = true;
        return std::nullopt;
    }
    if (bytes.size() < sizeof length + length)
        return std::nullopt;
    WorkerMessage message;
    message.kind = static_cast<WorkerMessage::Kind>(bytes[sizeof length]);
    std::memcpy(&message.fraction, bytes.data() + sizeof length + 1, sizeof message.fraction);
    message.text = bytes.substr(sizeof length + kFixedPart, length - kFixedPart);
    m_taken += sizeof length + length;
    return message;
}

} // namespace Vs::Exchange
