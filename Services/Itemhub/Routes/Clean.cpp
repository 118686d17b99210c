#include "Services/Itemhub/Routes/Clean.h"

#include <algorithm>

namespace Itemhub::Routes {

namespace {

bool isUnwanted(QChar character)
{
    const auto category = character.category();
    const char16_t code = character.unicode();
    // Directional marks, embeddings and isolates; they can make a name look like another one.
    const bool turns = code == 0x200e || code == 0x200f || code == 0x061c ||
                       (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069) ||
                       code == 0xfeff;
    return turns || category == QChar::Other_Control || category == QChar::Other_NotAssigned ||
           code == 0xfffe || code == 0xffff;
}

} // namespace

QString cleanedText(const QString& text)
{
    QString clean;
    for (const QChar character : QString(text).replace("\r\n", "\n").normalized(QString::NormalizationForm_C))
        if (character == '\n' || character == '\t' || !isUnwanted(character))
            clean += character;
    return clean.trimmed();
}

QString cleanedName(const QString& text)
{
    return cleanedText(text).simplified();
}

QString cleanedFileName(const QString& text)
{
    QString clean = cleanedName(text);
    clean.replace('/', '_').replace('\\', '_');
    while (clean.startsWith('.'))
        clean.remove(0, 1);
    return clean.trimmed();
}

} // namespace Itemhub::Routes
