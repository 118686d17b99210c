#include "Server/Itemhub/Client/HashFile.h"

#include "Server/Itemhub/ItemStore.h"
#include "Server/Network/Sha256.h"

#include <QFile>

namespace Vs::Itemhub {

std::string hashFile(const std::string& path, const Network::Watch& watch)
{
    constexpr qint64 kPiece = qint64(1) << 20;
    QFile file(QString::fromStdString(path));
    const auto fail = [&] {
        throw Web::ItemhubException(Web::ItemhubException::Kind::Local,
                                    "\"" + path + "\" cannot be read: " + file.errorString().toStdString());
    };
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        fail();
    Network::Sha256 hash;
    QByteArray piece(kPiece, Qt::Uninitialized);
    for (qint64 count = 0; (count = file.read(piece.data(), kPiece)) != 0;) {
        if (count < 0)
            fail();
        hash.add(QByteArrayView(piece.constData(), count));
        if (!watch.goesOn())
            throw ItemStore::Cancelled();
    }
    return hash.digits();
}

} // namespace Vs::Itemhub
