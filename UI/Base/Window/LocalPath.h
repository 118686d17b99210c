#pragma once

#include "Server/Base/Strings.h"

#include <QUrl>

namespace Vu {

/// The path of a local file. Its name may not be valid UTF-8, which QUrl::toLocalFile would alter.
inline std::wstring pathOf(const QUrl& url)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    return Vs::Strings::fromBytes({bytes.constData(), static_cast<size_t>(bytes.size())});
}

} // namespace Vu
