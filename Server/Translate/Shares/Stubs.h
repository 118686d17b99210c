#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Translate::Shares {

/// Numbers that stand-ins may take.
constexpr uint32_t kStandIns = 32;

/// A solid, surface model, shell, face, edge or vertex of which only the name is to be known.
struct Stub
{
    std::string_view entity;
    uint32_t number = 0;
    std::string_view name; ///< With its quotes.
};

/// Its statement. What a stub refers to has to be there, and to be of the right kind, for the kernel looks at
/// it before it knows that the shape is there already: these are stand-ins, with numbers from `first` on.
[[nodiscard]] std::string stubOf(const Stub& stub, uint32_t first);
/// Their statements.
[[nodiscard]] std::string standIns(uint32_t first);

/// The first text among a statement's parameters, with its quotes; '' if there is none.
[[nodiscard]] std::string_view nameIn(std::string_view statement);

} // namespace Vs::Translate::Shares
