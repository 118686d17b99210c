#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Translate::Shares {

/// Numbers available to stand-ins.
constexpr uint32_t kStandIns = 32;

/// A solid, surface model, shell, face, edge or vertex of which only the name is kept.
struct Stub
{
    std::string_view entity;
    uint32_t number = 0;
    std::string_view name; ///< With its quotes.
};

/// Its statement. What a stub refers to must exist, and be of the right kind, because the kernel checks it
/// before it notices that the shape exists already: these are stand-ins, with numbers from `first` on.
[[nodiscard]] std::string stubOf(const Stub& stub, uint32_t first);
/// Their statements.
[[nodiscard]] std::string standIns(uint32_t first);

/// The first text among a statement's parameters, with its quotes; '' if there is none.
[[nodiscard]] std::string_view nameIn(std::string_view statement);

} // namespace Vs::Translate::Shares
