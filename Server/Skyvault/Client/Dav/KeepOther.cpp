#include "Server/Skyvault/Client/Dav/KeepOther.h"

#include <QDateTime>
#include <QString>

namespace Vs::Cloud {

namespace {

constexpr int kMostCopies = 20;
constexpr qsizetype kLongestName = 255;

QString timeText(const DriveEntry& entry, const char* format)
{
    const auto time = std::chrono::duration_cast<std::chrono::seconds>(entry.modified.time_since_epoch());
    if (time.count() <= 0)
        return {};
    return QDateTime::fromSecsSinceEpoch(time.count(), Qt::UTC).toString(QString::fromLatin1(format));
}

} // namespace

std::string whoAndWhen(const DriveEntry& entry)
{
    std::string text = entry.modifiedBy;
    if (const QString time = timeText(entry, "yyyy-MM-dd hh:mm:ss"); !time.isEmpty())
        text += (text.empty() ? "" : ", ") + time.toStdString() + " UTC";
    return text.empty() ? text : " (" + text + ")";
}

std::string nameOfCopy(const DriveEntry& other, int number)
{
    const QString name = QString::fromStdString(nameOf(other.path));
    const qsizetype dot = name.lastIndexOf('.');
    QString stem = dot > 0 ? name.left(dot) : name;
    const QString end = dot > 0 ? name.mid(dot) : QString();
    QString who = QString::fromStdString(other.modifiedBy).left(40);
    who.replace('/', '-').replace('\\', '-');
    QString mark = (who + ' ' + timeText(other, "yyyy-MM-dd hh.mm.ss")).trimmed();
    if (mark.isEmpty())
        mark = QStringLiteral("other");
    mark = " (" + mark + ')';
    if (number > 1)
        mark += ' ' + QString::number(number);
    while (!stem.isEmpty() && (stem + mark + end).toUtf8().size() > kLongestName)
        stem.chop(1);
    return joined(parentOf(other.path), (stem + mark + end).toStdString());
}

std::string nameOfNewCopy(Session& session, const DriveEntry& other)
{
    for (int number = 1; number <= kMostCopies; ++number) {
        std::string copy = nameOfCopy(other, number);
        DriveEntry there;
        // Some servers overwrite an existing copy though told not to.
        if (session.find(copy, there).state == CloudErrorState::NotFound)
            return copy;
    }
    return {};
}

DriveResult keepOther(Session& session, const DriveEntry& other)
{
    if (session.traits.versions)
        return {};
    const std::string action = session.action("Keeping the other version of", other.path);
    for (int tries = 0; tries < kMostCopies; ++tries) {
        const std::string copy = nameOfNewCopy(session, other);
        if (copy.empty())
            break;
        const Answer answer = session.ask(
            "COPY", other.path, {{"Destination", session.address.of(copy).toEncoded()}, {"Overwrite", "F"}});
        if (answer.status == 412)
            continue;
        if (!answer.isOk() && !answer.isLost())
            return resultOf(answer, action);
        DriveEntry there;
        if (session.find(copy, there).isOk() && there.size == other.size)
            return {};
        return answer.isOk() ? failed(CloudErrorState::NotKept, action, "the server didn't copy all of it")
                             : resultOf(answer, action);
    }
    return failed(CloudErrorState::NotKept, action, "too many copies are there");
}

} // namespace Vs::Cloud
