#pragma once

#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

/// The service's values out of its JSON. PayloadException for what isn't as it should be.
namespace Vs::Itemhub::Values {

[[nodiscard]] Web::Workspace workspace(const JsonReader& json);
[[nodiscard]] Web::Item item(const JsonReader& json);
[[nodiscard]] Web::Attachment attachment(const JsonReader& json);
[[nodiscard]] Web::Version version(const JsonReader& json);
[[nodiscard]] Web::Comment comment(const JsonReader& json);
[[nodiscard]] ItemEvent event(const JsonReader& json);
[[nodiscard]] DashboardRequest request(const JsonReader& json);
/// What `attachments/ID.xml` answers.
[[nodiscard]] Content content(const QByteArray& xml, const std::string& action);
/// A name as a file may be called, near to the given one.
[[nodiscard]] std::string fileName(const std::string& name);

} // namespace Vs::Itemhub::Values
