#pragma once

#include "Server/Base/ScriptModel.h"

#include <functional>
#include <pybind11/pybind11.h>

namespace Vs::Python {

/// Adds to the module what ScriptModel answers. While nobody has models, each of these is an error.
void addModelQuestions(pybind11::module_& module);

/// Has a function of Python's called with what ScriptModel tells, while the interpreter runs; what it raises
/// is given to `failed`.
void tellChanges(const pybind11::function& heard,
                 const std::function<void(pybind11::error_already_set&)>& failed);
/// ScriptModel::define.
void defineInModel(ScriptModel::Command command);
/// Nobody is told any more.
void tellNoChanges();

} // namespace Vs::Python
