#pragma once

#include "UI/Base/Program/VectorPage.h"

#include <QWidget>

#include <optional>

class QPainter;

namespace Vu {

/// Shows a page, or in its place why there is none.
class PagePreview : public QWidget
{
public:
    explicit PagePreview(QWidget* parent);

    void show(std::optional<VectorPage> page, const QString& reason);
    /// Says over what is shown that another page is being made, until that is shown.
    void showWorking(const QString& text);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintShown(QPainter& painter) const;
    void paintWorking(QPainter& painter) const;

    std::optional<VectorPage> m_page;
    QString m_reason, m_working;
};

} // namespace Vu
