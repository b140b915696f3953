#pragma once

#include <QStyledItemDelegate>

class QTreeView;

namespace sysadmin {

/// Paints the rows of the navigation bar: group headings, and items with small icons (picture before the
/// caption) or large ones (picture above it). Captions wrap rather than being cut off.
class NavigationDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// What a row's item holds besides caption and picture.
    enum Role {
        KeyRole = Qt::UserRole, ///< the group's or item's key
        LargeRole,              ///< bool, of an item: with a large icon
        ControlRole,            ///< of something found on a screen: its control
        DetailRole,             ///< text below an item's caption
    };

    explicit NavigationDelegate(QTreeView* view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void PaintGroup(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void PaintItem(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

    QTreeView* m_view;
};

} // namespace sysadmin
