#pragma once

#include "Server/Network/Http.h"

#include <QJsonObject>
#include <QUrlQuery>

namespace Vs::Network {

/// The response of an address to GET; empty if that isn't a JSON object.
QJsonObject getJson(Http& http, const QUrl& url);
/// Posts a form.
Answer postForm(Http& http, const QUrl& url, const QUrlQuery& form, const Watch& watch = {});
QJsonObject objectOf(const Answer& answer);
/// A single-use name: 256 random bits in URL-safe characters.
QByteArray randomName();

} // namespace Vs::Network
