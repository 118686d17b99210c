#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// What scripts ask so often, or so much of, that the text of a line would be in the way: whoever has models
/// answers it. Main thread.
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

    /// Makes the command known, or another one of a name that is known already.
    virtual void define(Command command) = 0;

    /// Another one after each change of a model, and where another model is the active one.
    [[nodiscard]] virtual uint64_t revision() = 0;
    /// Forgets which components were added until now.
    virtual void forgetAdded() = 0;
    /// Has `heard` called with "model", "document" or "selection" when something of it has changed: when the
    /// line that did it is at its end, and once for all that it did.
    virtual void listen(std::function<void(const char*)> heard) = 0;
    /// The mesh of a component's body, in its own coordinates. The component is named as the line
    /// Script.Component does with /Id. Throws Vs::Exception.
    [[nodiscard]] virtual std::vector<Buffer> mesh(const std::wstring& component) = 0;

    /// Null while nobody has models.
    static ScriptModel* get();
    /// Not owned.
    static void set(ScriptModel* model);
};

} // namespace Vs
