#include "Server/Itemhub/Private/Hash.h"

#include "Server/Base/Exception.h"
#include "Server/Itemhub/ItemStore.h"

#include <QCryptographicHash>
#include <QFile>

namespace Vs::Itemhub {

std::string hashOf(const boost::filesystem::path& path, const Network::Watch& watch)
{
    constexpr qint64 kPiece = qint64(1) << 20;
    QFile file(QString::fromStdString(path.string()));
    const auto fail = [&] {
        throw Exception("\"" + path.string() + "\" cannot be read: " + file.errorString().toStdString());
    };
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        fail();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray piece(kPiece, Qt::Uninitialized);
    for (qint64 count = 0; (count = file.read(piece.data(), kPiece)) != 0;) {
        if (count < 0)
            fail();
        hash.addData(QByteArrayView(piece.constData(), count));
        if (!watch.goesOn())
            throw ItemStore::Cancelled();
    }
    return hash.result().toHex().toStdString();
}

} // namespace Vs::Itemhub
