#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Network/Request.h"

#include <QJsonObject>

#include <string>

/// What the service's responses mean. `action` says what was attempted and where, for messages: "Reading
/// the item 7 at items.example.org".
namespace Vs::Itemhub::Answers {

/// Throws what a missing or non-2xx response means.
void check(const Network::Answer& answer, const std::string& action);
/// The JSON object of a response, which is checked as well. PayloadException if it has none.
[[nodiscard]] QJsonObject object(const Network::Answer& answer, const std::string& action);
/// Text from a server in a form that is safe to show in a message.
[[nodiscard]] std::string printable(const QString& text);

} // namespace Vs::Itemhub::Answers
