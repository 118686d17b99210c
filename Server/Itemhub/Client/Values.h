#pragma once

#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

/// Parses the service's values from its JSON. PayloadException for malformed ones.
namespace Vs::Itemhub::Values {

[[nodiscard]] Web::Workspace workspace(const JsonReader& json);
[[nodiscard]] Web::Item item(const JsonReader& json);
[[nodiscard]] Web::Attachment attachment(const JsonReader& json);
[[nodiscard]] Web::Version version(const JsonReader& json);
[[nodiscard]] Web::Comment comment(const JsonReader& json);
[[nodiscard]] ItemEvent event(const JsonReader& json);
[[nodiscard]] DashboardRequest request(const JsonReader& json);
/// The response to `attachments/ID.xml`.
[[nodiscard]] Content content(const QByteArray& xml, const std::string& action);
/// A valid file name close to the given name.
[[nodiscard]] std::string fileName(const std::string& name);

} // namespace Vs::Itemhub::Values
