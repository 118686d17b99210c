#pragma once

#include "Server/Base/ScriptModel.h"

#include <functional>
#include <pybind11/pybind11.h>

namespace Vs::Python {

/// Adds to the module the functions that ScriptModel answers. While nobody provides models, each of them
/// raises an error.
void addModelQuestions(pybind11::module_& module);

/// Calls a Python function with what ScriptModel reports, while the interpreter runs; what it raises goes to
/// `failed`.
void tellChanges(const pybind11::function& heard,
                 const std::function<void(pybind11::error_already_set&)>& failed);
/// ScriptModel::define.
void defineInModel(ScriptModel::Command command);
/// Stops all reports.
void tellNoChanges();

} // namespace Vs::Python
