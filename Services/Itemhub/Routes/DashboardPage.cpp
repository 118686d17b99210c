#include "Services/Itemhub/Routes/DashboardPage.h"

#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Texts.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace Itemhub::Routes {

namespace {

/// Scripts, content and requests of this origin only.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "form-action 'self'; base-uri 'none'; frame-ancestors 'none'; require-trusted-types-for 'script'";

QByteArray resource(const QString& name)
{
    QFile file(":/dashboard/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// All of the page's texts by key, in the reader's language.
QJsonObject textsFor(const Texts& texts)
{
    QJsonObject shown = QJsonDocument::fromJson(resource("texts.json")).object();
    for (auto text = shown.begin(); text != shown.end(); ++text)
        *text = texts.text(text.key().toUtf8().constData(), text.value().toString().toUtf8().constData());
    return shown;
}

/// JSON embedded in a page: nothing in it can close the surrounding element.
QString embedded(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)).replace('<', "\\u003c");
}

const char* typeOf(const QString& name)
{
    static constexpr std::array<std::pair<const char*, const char*>, 3> kTypes{
        {{".js", "text/javascript"}, {".css", "text/css; charset=utf-8"}, {".svg", "image/svg+xml"}}};
    for (const auto& [ending, type] : kTypes)
        if (name.endsWith(QLatin1String(ending)))
            return type;
    return nullptr;
}

} // namespace

Http::Response DashboardPage::response() const
{
    const Texts texts(languages);
    const QJsonObject session{
        {"account", account}, {"customer", customer}, {"proof", proof},     {"own", own},
        {"scope", scope},     {"provider", provider}, {"linked", isLinked}, {"administers", administers}};
    Http::Response response;
    response.type = "text/html";
    response.headers = {{"Content-Security-Policy", kPolicy},
                        {"Cross-Origin-Opener-Policy", "same-origin"},
                        {"Vary", "Accept-Language, Cookie"}};
    response.body = QString::fromUtf8(resource("page.html"))
                        .arg(texts.language(), embedded(textsFor(texts)), embedded(session))
                        .toStdString();
    return response;
}

Http::Response dashboardFile(const QString& name, const Http::Request& request)
{
    const char* const type = typeOf(name);
    const QByteArray content = type ? resource(name) : QByteArray();
    if (content.isEmpty())
        throw Http::Problem(404, "not_found", "The page has no such file.");
    Http::Response response;
    response.type = type;
    response.headers = {{"ETag", '"' + Blobs::Digest::hexOf(content.toStdString()) + '"'},
                        {"Cache-Control", "no-cache"}};
    if (request.header("If-None-Match") == response.headers.front().second)
        response.status = 304;
    else
        response.body = content.toStdString();
    return response;
}

} // namespace Itemhub::Routes
