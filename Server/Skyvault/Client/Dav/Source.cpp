#include "Server/Skyvault/Client/Dav/Source.h"

#include "Server/Skyvault/Client/Dav/Compare.h"

#include <QFileInfo>

namespace Vs::Cloud {

DriveResult Source::open(const std::string& action)
{
    const QFileInfo info(QString::fromStdString(m_file));
    if (!info.isFile() || !info.isReadable())
        return failed(CloudErrorState::CacheFailed, action,
                      "\"" + m_file + "\" can't be read on this machine");
    m_size = info.size();
    return {};
}

void Source::addSum()
{
    m_sum = sha1Of(m_file);
}

Answer Source::putTo(Session& session, const std::string& path, Headers headers,
                     const DriveWatch& watch) const
{
    headers.push_back({"Content-Type", "application/octet-stream"});
    if (session.traits.checksums)
        headers.push_back({"OC-Checksum", "SHA1:" + m_sum});
    return session.http.ask({.method = "PUT",
                             .url = session.address.of(path),
                             .headers = std::move(headers),
                             .file = FilePart{m_file, 0, m_size}},
                            watch);
}

} // namespace Vs::Cloud
