#include "Server/Base/Python/Startup.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Python/OwnCode.h"
#include "Server/Base/Python/VirtualEnvironment.h"

#include <string>

namespace Vs::Python {

namespace {

/// The system's own, whatever comes first on the PATH.
constexpr const char* kInterpreter = "/usr/bin/python3";

/// Finds the modules of the areas for a Python that isn't the program's own, after all others: somebody
/// else's module called Model or Options stays theirs.
constexpr const char* kFinder = R"(
import importlib.machinery, sys

class _Areas:
    def __init__(self, module):
        self._module = module
    def find_spec(self, name, path=None, target=None):
        if path is None and name in self._module.areas():
            return importlib.machinery.ModuleSpec(name, self, origin='quillet')
    def create_module(self, spec):
        return self._module.area(spec.name)
    def exec_module(self, module):
        pass

def offer(module):
    sys.meta_path.append(_Areas(module))
)";

} // namespace

void startPython()
{
    PyConfig config;
    PyConfig_InitPythonConfig(&config);
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    // Variables meant for another Python on the user's PATH must not affect this one.
    config.use_environment = 0;
    const std::string environment = activeEnvironment(kInterpreter);
    const char* const interpreter = environment.empty() ? kInterpreter : environment.c_str();
    PyConfig_SetBytesString(&config, &config.program_name, interpreter);
    PyConfig_SetBytesString(&config, &config.executable, interpreter);
    const PyStatus started = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    if (PyStatus_Exception(started))
        throw Exception(std::string("Python cannot be started: ") +
                        (started.err_msg ? started.err_msg : "unknown cause") + '.');
}

void offerAreas(const pybind11::object& module)
{
    pybind11::dict names;
    execute(kFinder, names);
    names["offer"](module);
}

} // namespace Vs::Python
