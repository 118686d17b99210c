#include "Server/DataModel/Model/BodiesLetGo.h"

namespace Vs {

std::vector<std::string> BodiesLetGo::add(const std::string& part, size_t bytes)
{
    constexpr size_t kMostParts = 100'000, kMostBytes = size_t(128) << 20;
    m_parts.push_back({part, bytes});
    m_bytes += bytes;
    std::vector<std::string> tooMany;
    while (m_parts.size() > kMostParts || (m_bytes > kMostBytes && !m_parts.empty())) {
        tooMany.push_back(m_parts.front().entry);
        m_bytes -= m_parts.front().bytes;
        m_parts.pop_front();
    }
    return tooMany;
}

} // namespace Vs
