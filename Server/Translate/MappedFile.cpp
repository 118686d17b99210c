#include "Server/Translate/MappedFile.h"

#include "Server/Translate/Reading.h"

#include <algorithm>
#include <stdexcept>

namespace Vs::Translate {

namespace {

constexpr size_t kPiece = 64UL * 1024;

} // namespace

MappedFile::MappedFile(const std::string& path)
{
    try {
        m_mapping = FileMapping::open(path);
    } catch (const std::runtime_error& error) {
        throw Unreadable(std::string("can't be read: ") + error.what());
    }
}

ReportingBuffer::int_type ReportingBuffer::underflow()
{
    if (m_given == m_bytes.size())
        return traits_type::eof();
    m_report(double(m_given) / double(m_bytes.size()));
    const size_t size = std::min(kPiece, m_bytes.size() - m_given);
    char* begin = const_cast<char*>(m_bytes.data()) + m_given;
    setg(begin, begin, begin + size);
    m_given += size;
    return traits_type::to_int_type(*begin);
}

} // namespace Vs::Translate
