#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Network/Request.h"

#include <QJsonObject>

#include <string>

/// What the service's answers mean. `action` says what was tried and where, for messages: "Reading the item 7
/// at items.example.org".
namespace Vs::Itemhub::Answers {

/// Throws what an answer means that isn't of the kind 2xx, or that never came.
void check(const Network::Answer& answer, const std::string& action);
/// The JSON object of an answer that is checked, too. PayloadException if it has none.
[[nodiscard]] QJsonObject object(const Network::Answer& answer, const std::string& action);
/// What a server wrote, as it may stand in a message.
[[nodiscard]] std::string printable(const QString& text);

} // namespace Vs::Itemhub::Answers
