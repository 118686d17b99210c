#include "Server/Base/Python/ModelQuestions.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/Interruptible.h"
#include "Server/Base/ScriptModel.h"

#include <utility>

namespace Vs::Python {

namespace py = pybind11;

namespace {

using Buffer = ScriptModel::Buffer;

ScriptModel& model()
{
    ScriptModel* found = ScriptModel::get();
    if (!found)
        throw Exception("There are no models in this program.");
    return *found;
}

py::buffer_info described(const Buffer& buffer)
{
    const bool isFloat = buffer.number == Buffer::Number::Float;
    const auto size = py::ssize_t(isFloat ? sizeof(float) : sizeof(uint32_t));
    // An empty buffer may have a null address, which Python takes for a failure.
    static const uint32_t none = 0;
    void* data = const_cast<void*>(buffer.rows ? buffer.data : &none);
    const auto rows = py::ssize_t(buffer.rows), columns = py::ssize_t(buffer.columns);
    const std::string format =
        isFloat ? py::format_descriptor<float>::format() : py::format_descriptor<uint32_t>::format();
    if (columns == 1)
        return {data, size, format, 1, {rows}, {size}, true};
    return {data, size, format, 2, {rows, columns}, {size * columns, size}, true};
}

} // namespace

void addModelQuestions(py::module_& module)
{
    py::class_<Buffer>(module, "Buffer", py::buffer_protocol(), py::module_local(),
                       "Numbers as they lie in memory.")
        .def_buffer([](Buffer& buffer) { return described(buffer); });
    module.def(
        "revision", [] { return model().revision(); },
        "A number that is another one after each change of a model.");
    module.def(
        "forget_added", [] { model().forgetAdded(); },
        "Has Script.Added tell only what is added from now on.");
    module.def(
        "mesh",
        [](const py::str& component) {
            py::dict all;
            for (Buffer& buffer : model().mesh(wideText(component))) {
                const char* name = buffer.name;
                all[name] = py::memoryview(py::cast(std::move(buffer)));
            }
            return all;
        },
        "The buffers of a component's mesh.");
}

void tellChanges(const py::function& heard, const std::function<void(py::error_already_set&)>& failed)
{
    model().listen([heard, failed](const char* what) {
        const Lock lock;
        try {
            heard(what);
        } catch (py::error_already_set& error) {
            failed(error);
        }
    });
}

void defineInModel(ScriptModel::Command command)
{
    model().define(std::move(command));
}

void tellNoChanges()
{
    if (ScriptModel* found = ScriptModel::get())
        found->listen([](const char*) {});
}

} // namespace Vs::Python
