#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// What a line accepts, according to its command's help text.
///
/// A help text begins with the usage: `<text>` is a parameter, `[...]` what may be left out, `A|B` a choice,
/// `...` any number of further parameters, and `/Name` a flag. The first other word ends it; flags named
/// after it count as well.
struct TextUsage
{
    explicit TextUsage(const std::wstring& help);

    /// Without the slash.
    std::vector<std::wstring> flags;
    /// The largest number of parameters; none if there is no limit.
    std::optional<size_t> mostParameters = 0;

    /// The flag that is written like `text`, whatever the case of its letters; null if there is none.
    [[nodiscard]] const std::wstring* flag(std::wstring_view text) const;
};

} // namespace Vs
