#include "UI/Base/Window/CompletionPopup.h"

#include "UI/Base/Command/Private/Localized.h"

#include <QLineEdit>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kVisibleCandidates = 10;

} // namespace

CompletionPopup::CompletionPopup(QLineEdit* line, QWidget* parent) : QListWidget(parent), m_line(line)
{
    setAccessibleName(QString::fromStdWString(localized("CommandLineOffer", "Completions")));
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    hide();
}

void CompletionPopup::offer(const QStringList& candidates)
{
    clear();
    addItems(candidates);
    setCurrentRow(-1);
    if (candidates.isEmpty()) {
        hide();
        return;
    }
    const int rows = std::min<int>(kVisibleCandidates, count());
    const int height = rows * sizeHintForRow(0) + 2 * frameWidth();
    const int width = std::max(m_line->width() / 2, sizeHintForColumn(0) + 40);
    const QPoint corner = m_line->mapToGlobal(QPoint(0, -height - 2));
    setGeometry(corner.x(), corner.y(), std::min(width, m_line->width()), height);
    show();
}

void CompletionPopup::step(int by)
{
    setCurrentRow(std::min(currentRow() + by, count() - 1));
}

QString CompletionPopup::commonStart() const
{
    const auto text = [this](int row) { return item(row)->text(); };
    QString common = count() > 0 ? text(0) : QString();
    for (int row = 1; row < count(); ++row) {
        const QString other = text(row);
        const auto differs = std::mismatch(common.cbegin(), common.cend(), other.cbegin(), other.cend());
        common.truncate(differs.first - common.cbegin());
    }
    return common;
}

} // namespace Vu
