#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// Queries that scripts make so often, or with so much data, that lines of text would be in the way; answered
/// by whoever has models. Main thread.
class ScriptModel
{
public:
    /// Numbers as they lie in memory, row by row.
    struct Buffer
    {
        enum class Number { Float, Unsigned32 };

        const char* name;
        Number number;
        size_t rows, columns;
        const void* data;
        std::shared_ptr<const void> owner; ///< Of the data.
    };

    /// A command that a script brings.
    struct Command
    {
        std::wstring name; ///< Of its line, Scripts.NAME.
        std::wstring title, description;
        std::string key;   ///< As "Ctrl+Shift+F"; empty for none.
        std::wstring icon; ///< A PNG file, or a folder of them as ImageSetResource has; empty for none.
        std::function<void()> run; ///< Throws Vs::Exception.
    };

    virtual ~ScriptModel() = default;

    /// Registers the command, or replaces the one of the same name.
    virtual void define(Command command) = 0;

    /// A different number after each change of a model, and when another model becomes active.
    [[nodiscard]] virtual uint64_t revision() = 0;
    /// Forgets which components were added until now.
    virtual void forgetAdded() = 0;
    /// Calls `heard` with "model", "document" or "selection" when any of these has changed: once, at the end
    /// of the line that changed it.
    virtual void listen(std::function<void(const char*)> heard) = 0;
    /// The mesh of a component's body, in its own coordinates. The component is named as by the line
    /// Script.Component with /Id. Throws Vs::Exception.
    [[nodiscard]] virtual std::vector<Buffer> mesh(const std::wstring& component) = 0;

    /// Null while nobody has models.
    static ScriptModel* get();
    /// Not owned.
    static void set(ScriptModel* model);
};

} // namespace Vs
