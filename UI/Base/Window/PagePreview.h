#pragma once

#include "UI/Base/Program/VectorPage.h"

#include <QWidget>

#include <optional>

namespace Vu {

/// Shows a page, or in its place why there is none.
class PagePreview : public QWidget
{
public:
    explicit PagePreview(QWidget* parent);

    void show(std::optional<VectorPage> page, const QString& reason);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<VectorPage> m_page;
    QString m_reason;
};

} // namespace Vu
