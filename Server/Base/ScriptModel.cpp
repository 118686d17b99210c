#include "Server/Base/ScriptModel.h"

namespace Vs {

namespace {

ScriptModel* theModel = nullptr;

} // namespace

ScriptModel* ScriptModel::get()
{
    return theModel;
}

void ScriptModel::set(ScriptModel* model)
{
    theModel = model;
}

} // namespace Vs
