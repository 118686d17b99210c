#include "Server/Itemhub/Private/Places.h"

#include "Server/Base/FolderName.h"
#include "Server/Base/PathInfo.h"

#include <QCryptographicHash>
#include <QUrl>

#include <boost/filesystem/operations.hpp>

namespace Vs::Itemhub {

Places::Path Places::root()
{
    // Beside the cloud drive's files, not among them: those are saved by their own commands. Cached, since
    // every change of any document asks whether it is in here.
    static const Path kept = PathInfo::cloudCacheDirectory().parent_path() / "itemhub";
    return kept;
}

Places::Path Places::ownService()
{
    return root() / "service";
}

Places::Path Places::account(const std::string& name)
{
    return root() / "accounts" / name;
}

Places::Path Places::queue(const std::string& name)
{
    return account(name) / "queue";
}

Places::Path Places::contents(const std::string& name)
{
    return account(name) / "contents";
}

std::vector<std::string> Places::accounts()
{
    namespace fs = boost::filesystem;
    std::vector<std::string> names;
    boost::system::error_code error;
    for (fs::directory_iterator folder(root() / "accounts", error), end; !error && folder != end;
         folder.increment(error))
        names.push_back(folder->path().filename().string());
    return names;
}

std::string Places::nameOf(const std::string& address, const std::string& customer,
                           const std::string& account)
{
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray::fromStdString(address + '\n' + customer + '\n' + account), QCryptographicHash::Sha256);
    constexpr int kDigits = 8;
    const std::string host = QUrl(QString::fromStdString(address)).host().toStdString();
    return folderName(host.empty() ? address : host) + '-' + folderName(account) + '-' +
           digest.toHex().left(kDigits).toStdString();
}

} // namespace Vs::Itemhub
