#pragma once

#include <QString>

#include <string>

namespace Vs {

/// Qt's text as wide text, with everything that QString::fromStdWString took over. QString::toStdWString
/// would lose what stands for a byte of a file's name (see Strings::fromBytes).
inline std::wstring wideText(const QString& text)
{
    std::wstring wide;
    wide.reserve(static_cast<size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const bool pair = QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        wide.push_back(static_cast<wchar_t>(pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : unit));
        i += pair ? 1 : 0;
    }
    return wide;
}

} // namespace Vs
