#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::StringTable {

/// The text that a person sees: the translation of `defaultText` under `key` in the catalogue `domain`, or
/// the default itself. Catalogues are gettext's: the key is the message context, the default is the message.
/// Main thread.
[[nodiscard]] std::wstring getLocalizedString(std::wstring_view domain, const char* key,
                                              const char* defaultText);

/// Switches the language of all texts from now on, as "de" or "en". A language without a catalogue gives the
/// defaults. Initially it is that of the environment (LANGUAGE, LC_ALL, LC_MESSAGES, LANG).
void language(std::string_view code);
const std::string& language();

/// The languages that have a catalogue, and English.
[[nodiscard]] std::vector<std::string> languages();

} // namespace Vs::StringTable
