#include "UI/Base/Program/LocalNumbers.h"

#include <QLocale>
#include <QString>

#include <cwctype>

namespace Vu {
namespace {

constexpr wchar_t kPoint = L'.';

/// Of one letter, as all decimal signs are.
wchar_t decimalSign()
{
    const std::wstring sign = QString(QLocale().decimalPoint()).toStdWString();
    return sign.size() == 1 ? sign.front() : kPoint;
}

/// Of signs before a digit alone: what ends a sentence isn't one.
std::wstring replaced(std::wstring text, wchar_t sign, wchar_t other)
{
    for (size_t i = 0; sign != other && i + 1 < text.size(); ++i)
        if (text[i] == sign && std::iswdigit(static_cast<wint_t>(text[i + 1])))
            text[i] = other;
    return text;
}

} // namespace

std::wstring localNumbers(const std::wstring& text)
{
    return replaced(text, kPoint, decimalSign());
}

std::wstring plainNumbers(const std::wstring& text)
{
    return text.find(kPoint) == std::wstring::npos ? replaced(text, decimalSign(), kPoint) : text;
}

} // namespace Vu
