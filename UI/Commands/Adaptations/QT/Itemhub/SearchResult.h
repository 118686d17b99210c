#pragma once

#include "Server/Itemhub/WebServices.h"

#include <QAbstractButton>

namespace Vu::Commands {

/// A row of the search results: an item's caption and, fainter below it, where it is from. Its star bookmarks
/// the item. Captions are shown literally, whatever they contain.
class SearchResult : public QAbstractButton
{
public:
    using Item = Corvane::Itemstore::WebServices::Item;

    SearchResult(const Item& item, QWidget* parent);

    int itemId() const { return static_cast<int>(m_item.id()); }
    bool isFavourite() const { return m_isFavourite; }
    bool isSelected() const { return m_isSelected; }
    void selected(bool value);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QRect star() const;
    void bookmark();

    Item m_item;
    QString m_caption, m_detail;
    bool m_isFavourite;
    bool m_isSelected = false;
};

} // namespace Vu::Commands
