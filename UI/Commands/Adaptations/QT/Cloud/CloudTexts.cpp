#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"

#include "Server/Base/PathInfo.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Localized.h"

#include <QDateTime>
#include <QLocale>
#include <QUrl>

namespace Vu::Commands::CloudTexts {

QString text(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

QString named(const QString& text)
{
    return text.arg(QString::fromStdWString(Vs::SkyvaultUtilities::getCloud_TM()));
}

QString shown(const std::string& name)
{
    QString text = QString::fromStdString(name);
    for (QChar& letter : text)
        if (letter.category() == QChar::Other_Control || letter.category() == QChar::Other_Format ||
            letter.category() == QChar::Separator_Line || letter.category() == QChar::Separator_Paragraph)
            letter = QChar::ReplacementCharacter;
    return text;
}

QIcon icon(const char* name)
{
    return iconAt(
        (Vs::PathInfo::localizationDirectory(true) / "UI" / "Commands" / "Resources" / "Cloud" / name)
            .wstring());
}

QString failure(const Vs::Cloud::DriveResult& result)
{
    return QString::fromStdWString(Vs::SkyvaultUtilities::getErrorString(result.state));
}

QString notFound(const Vs::Cloud::DriveResult& result, const QString& typed)
{
    const QUrl url(typed);
    const bool isHere =
        url.host() == QLatin1String("localhost") || url.host().startsWith(QLatin1String("127."));
    if (result.state == Vs::CloudErrorState::Redirected && url.scheme() == QLatin1String("http") && !isHere)
        return text(
            "CloudLoginUnprotected",
            "An address that begins with http:// is not protected: your password could be read on its way. "
            "Type the server's address with https:// instead.");
    const QString why = failure(result);
    return result.state != Vs::CloudErrorState::Certificate
               ? why
               : why + QLatin1Char('\n') +
                     text("CloudLoginTrust",
                          "If whoever runs the server tells you the same fingerprint, have this "
                          "computer trust the certificate, and continue.");
}

QString account()
{
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    std::wstring user;
    std::string server;
    if (!auth->isLoggedIn() || !auth->userName(user))
        return text("CloudNobody", "Nobody is signed in.");
    const QString address = auth->serverUrl(server) ? QString::fromStdString(server) : QString();
    const QString who =
        text("CloudSignedInAs", "Signed in as %1 at %2.").arg(QString::fromStdWString(user), address);
    return auth->isOnline() ? who
                            : who + u' ' + text("CloudAway", "The server cannot be reached at the moment.");
}

QString title(CloudDialog::Kind kind)
{
    using Kind = CloudDialog::Kind;
    return named(kind == Kind::Folder   ? text("CloudChooseFolder", "Save in a Folder of %1")
                 : kind == Kind::SaveAs ? text("CloudChooseName", "Save to %1")
                                        : text("CloudChooseDocument", "Open from %1"));
}

QString away(CloudDialog::Kind kind)
{
    return kind == CloudDialog::Kind::Document
               ? text("CloudListedHere", "The drive was not reached. These are its files on this computer.")
               : text("CloudSavedHere", "The drive was not reached. What you save waits on this computer, "
                                        "and is sent when the drive is back.");
}

QString nothingListed(bool isRead, bool hasEntries, bool isAway)
{
    if (!isRead)
        return text("CloudNotRead", "Nothing has been read.");
    if (hasEntries)
        return text("CloudNothingFound", "Nothing here has that name and kind.");
    return isAway ? text("CloudNothingHere", "Nothing from this folder is on this computer.")
                  : text("CloudEmptyFolder", "This folder is empty.");
}

QString unsafe()
{
    return text("CloudUnsafe",
                "This server cannot lock files, nor refuse a save that is older than what it has. If two "
                "people work on the same file at the same time, this cannot be detected reliably. Where it "
                "is noticed, the other person's changes are kept as a file beside yours.");
}

QStringList traits(const Vs::Cloud::DriveTraits& traits)
{
    QStringList lines;
    const auto choose = [&](const Vs::Cloud::Trait& trait, const QString& yes, const QString& no) {
        if (trait.isKnown())
            lines << (trait ? yes : no);
    };
    choose(traits.locks, text("CloudTraitLocks", "A file is locked for others while it is saved."),
           text("CloudTraitNoLocks", "Files cannot be locked while they are saved."));
    choose(traits.refusesStale,
           text("CloudTraitStale", "A save over somebody else's newer version is refused."),
           text("CloudTraitNoStale",
                "The server itself does not refuse a save over somebody else's newer version."));
    choose(traits.keepsOldOnBreak, text("CloudTraitBreak", "If a save breaks off, the old version stays."),
           text("CloudTraitNoBreak",
                "If a save breaks off, the server may lose the old version; so each save goes to "
                "another name first, or is sent again."));
    if (!traits.isKnown())
        lines << text(
            "CloudTraitUnknown",
            "Not everything that the server does could be tested; it is tested again before a save.");
    choose(traits.versions, text("CloudTraitVersions", "Older versions of a file are kept."),
           text("CloudTraitNoVersions", "Older versions of a file are not kept."));
    if (traits.chunkedUpload)
        lines << text("CloudTraitChunks", "Large files are sent in parts, and resume where they broke off.");
    if (traits.checksums)
        lines << text("CloudTraitChecksums", "Checksums show whether a file arrived as it was sent.");
    using std::chrono::duration_cast;
    const auto seconds = duration_cast<std::chrono::seconds>(traits.probed.time_since_epoch()).count();
    if (seconds > 0)
        lines << text("CloudTraitProbed", "Tested on %1.")
                     .arg(QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds).date(),
                                             QLocale::LongFormat));
    return lines;
}

} // namespace Vu::Commands::CloudTexts
