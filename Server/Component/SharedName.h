#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace Vs {

/// An immutable text whose copies share memory: most of many parts have the same name.
class SharedName
{
public:
    SharedName() = default;
    explicit SharedName(std::wstring text);

    operator const std::wstring&() const { return text(); }
    [[nodiscard]] const std::wstring& text() const;
    [[nodiscard]] bool empty() const { return !m_shared; }

    friend bool operator==(const SharedName& a, const SharedName& b)
    {
        return a.m_shared == b.m_shared || a.text() == b.text();
    }
    friend bool operator==(const SharedName& a, std::wstring_view b) { return a.text() == b; }

private:
    struct Shared : boost::intrusive_ref_counter<Shared>
    {
        explicit Shared(std::wstring text) : text(std::move(text)) {}
        const std::wstring text;
    };

    boost::intrusive_ptr<const Shared> m_shared; ///< Null for the empty text.
};

/// Mostly gives equal names the same memory: it remembers the last few hundred.
class RecentNames
{
public:
    [[nodiscard]] SharedName shared(const std::wstring& text);

private:
    static constexpr size_t kRemembered = 256;
    std::array<SharedName, kRemembered> m_names; ///< Each at an index that its text determines.
};

} // namespace Vs
