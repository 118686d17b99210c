#pragma once

#include "Server/Network/Http.h"

#include <QJsonObject>
#include <QUrlQuery>

namespace Vs::Network {

/// What an address answers to GET; empty if that is no JSON object.
QJsonObject getJson(Http& http, const QUrl& url);
/// Posts a form.
Answer postForm(Http& http, const QUrl& url, const QUrlQuery& form, const Watch& watch = {});
QJsonObject objectOf(const Answer& answer);
/// A name for once: 256 random bits, in letters that an address may hold.
QByteArray randomName();

} // namespace Vs::Network
