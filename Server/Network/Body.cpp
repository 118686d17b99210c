#include "Server/Network/Body.h"

#include <algorithm>
#include <cstring>

namespace Vs::Network {

Body::Body(const Request& request) : m_cut(request.cutAfter)
{
    if (!request.file) {
        m_bytes = request.body;
        m_size = m_bytes.size();
        return;
    }
    m_file.setFileName(QString::fromStdString(request.file->file));
    m_offset = request.file->offset;
    m_size = request.file->length;
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || !m_file.seek(m_offset) ||
        m_file.size() < m_offset + m_size)
        m_trouble = "\"" + request.file->file + "\" can't be read: " + m_file.errorString().toStdString();
}

bool Body::seek(qint64 position)
{
    m_position = position;
    return position <= m_size && (!m_file.isOpen() || m_file.seek(m_offset + position));
}

size_t Body::read(char* data, size_t most)
{
    qint64 count = std::min<qint64>(qint64(most), m_cut.value_or(m_size) - m_position);
    if (count <= 0)
        return 0;
    if (!m_file.isOpen()) {
        std::memcpy(data, m_bytes.constData() + m_position, size_t(count));
    } else if (count = m_file.read(data, count); count <= 0) {
        m_trouble = "\"" + m_file.fileName().toStdString() + "\" can't be read: " +
                    (count < 0 ? m_file.errorString().toStdString() : "it was cut short while it was sent");
        return 0;
    }
    m_position += count;
    return size_t(count);
}

} // namespace Vs::Network
