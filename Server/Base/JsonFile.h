#pragma once

#include <boost/filesystem/path.hpp>

#include <optional>

class QJsonObject;

/// Files that hold one JSON object. Any thread.
namespace Vs::JsonFile {

/// What the file holds; nothing if there is no such file. Throws Vs::Exception that names the file, the line
/// where there is one, and the cause, without a full stop at its end.
[[nodiscard]] std::optional<QJsonObject> read(const boost::filesystem::path& file);

enum class Readers { Everybody, OwnerOnly };

/// Replaces the file as a whole, or leaves the old one. Throws Vs::Exception that names file and cause.
void write(const boost::filesystem::path& file, const QJsonObject& object, Readers readers);

} // namespace Vs::JsonFile
