#pragma once

#include "Server/Base/Progress.h"

#include <memory>
#include <pybind11/pybind11.h>
#include <string>

namespace Vs::Python {

/// Holds the interpreter.
class Lock
{
public:
    Lock() : m_state(PyGILState_Ensure()) {}
    ~Lock() { PyGILState_Release(m_state); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    PyGILState_STATE m_state;
};

/// The script running in this scope: it counts as long work, a window stays alive between its steps, and a
/// cancel request interrupts it. The interpreter is held.
class Interruptible
{
public:
    explicit Interruptible(const std::string& script);
    ~Interruptible(); // NOLINT(bugprone-exception-escape): see there
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;

private:
    class KeptAlive;

    static inline int s_depth = 0;
    ProgressScope m_scope;
    std::unique_ptr<KeptAlive> m_keptAlive;
};

} // namespace Vs::Python
