#pragma once

#include <cstdint>
#include <functional>

namespace Vu {

class CommandStack;

/// The command stacks of all managers. Private to the command model; main thread only.
namespace CommandStacks {

/// Returns the stack's number, which is never given again in this process, and names it below.
[[nodiscard]] uint64_t add(CommandStack& stack);
void remove(uint64_t number);

/// Calls `use` for each, in the order in which they were made. It may make stacks, which aren't visited, and
/// remove some, which aren't any more.
void forEach(const std::function<void(CommandStack&)>& use);

/// Notes whether a stack is executing a simple command: one or none of thousands does.
void executes(uint64_t number, bool executing);
/// The oldest of those that do; null if none does.
[[nodiscard]] const CommandStack* executing();

/// Notes that a stack has run a command called in another stack's session, or in a session though it has none
/// itself.
void visits(uint64_t number);
/// Calls `use`, which makes and removes none, for each of those.
void forEachVisitor(const std::function<void(const CommandStack&)>& use);

} // namespace CommandStacks
} // namespace Vu
