#pragma once

#include <boost/uuid/uuid.hpp>

#include <string>

namespace Vs {

/// A new random identifier.
[[nodiscard]] boost::uuids::uuid makeUuid();

/// The usual text form: 36 characters, lower case, without braces.
[[nodiscard]] std::wstring fromUuid(const boost::uuids::uuid& uuid);

/// Reads the text form, with or without braces, in either case. The nil identifier if the text is none.
[[nodiscard]] boost::uuids::uuid fromString(const std::wstring& text);

} // namespace Vs
