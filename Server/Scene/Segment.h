#pragma once

#include "Server/Base/Object.h"

#include <string>
#include <utility>

namespace Vs {

/// A named part of the scene's data. A transient one is never saved: views, markers, previews.
class Segment : public Implements<Segment>
{
public:
    /// The transient segment of that name that belongs to no asset; created at the first call. It lives as
    /// long as the process.
    static Segment* makeTransientStandalone(const char* name);

    explicit Segment(std::string name, bool transient) : m_name(std::move(name)), m_transient(transient) {}
    const std::string& name() const { return m_name; }
    bool isTransient() const { return m_transient; }

private:
    std::string m_name;
    bool m_transient;
};

} // namespace Vs
