#include "Server/Skyvault/Client/Http/Body.h"

#include <algorithm>
#include <cstring>

namespace Vs::Cloud {

Body::Body(const Request& request) : m_cut(request.cutAfter)
{
    if (request.file) {
        m_file.setFileName(QString::fromStdString(request.file->file));
        m_offset = request.file->offset;
        m_size = request.file->length;
        if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || !m_file.seek(m_offset) ||
            m_file.size() < m_offset + m_size)
            m_trouble = "\"" + request.file->file + "\" can't be read: " + m_file.errorString().toStdString();
    } else {
        m_bytes = request.body;
        m_size = m_bytes.size();
    }
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool Body::seek(qint64 position)
{
    if (position != 0)
        return position == m_position;
    // Of a body without a byte nobody can tell whether its request has left.
    const bool isUntouched = m_position == 0 && m_size > 0;
    if (!isUntouched && m_rewinds-- <= 0)
        return false;
    m_position = 0;
    return QIODevice::seek(0) && (!m_file.isOpen() || m_file.seek(m_offset));
}

qint64 Body::readData(char* data, qint64 most)
{
    qint64 count = std::min(most, m_cut.value_or(m_size) - m_position);
    if (count <= 0 && m_cut) {
        if (m_atCut)
            m_atCut();
        return 0;
    }
    if (count <= 0)
        return m_position == m_size ? 0 : -1;
    if (m_file.isOpen())
        count = m_file.read(data, count);
    else
        std::memcpy(data, m_bytes.constData() + m_position, static_cast<size_t>(count));
    // A file that another program cuts short while it is sent ends the request: less would be kept than was
    // announced.
    if (count <= 0)
        return -1;
    m_position += count;
    return count;
}

} // namespace Vs::Cloud
