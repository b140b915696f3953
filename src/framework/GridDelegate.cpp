#include "framework/GridDelegate.h"

#include "framework/EscapeInList.h"
#include "framework/GridModel.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QIntValidator>
#include <QLineEdit>
#include <QToolTip>

namespace sysadmin {

namespace {

QColor Blend(const QColor& under, const QColor& over, double share) {
    const auto mix = [share](int a, int b) { return int(a + (b - a) * share); };
    return QColor(mix(under.red(), over.red()), mix(under.green(), over.green()),
                  mix(under.blue(), over.blue()));
}

const CellEdit* EditOf(const QModelIndex& index) {
    const auto* model = qobject_cast<const GridModel*>(index.model());
    return model ? model->EditOf(index) : nullptr;
}

} // namespace

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
    const CellEdit* edit = EditOf(index);
    if (!edit || edit->kind == CellEdit::Kind::Check)
        return nullptr; // a check mark turns over where it stands
    QWidget* editor = nullptr;
    if (edit->kind == CellEdit::Kind::Choice) {
        auto* box = new QComboBox(parent);
        KeepEscapeInList(*box);
        for (const PickItem& item : edit->items)
            box->addItem(item.text, item.id);
        editor = box;
    } else {
        auto* line = new QLineEdit(parent);
        line->setFrame(false);
        if (edit->kind == CellEdit::Kind::Number)
            line->setValidator(new QIntValidator(edit->least, edit->most, line));
        else if (edit->maxLength > 0)
            line->setMaxLength(qMax(edit->maxLength, int(index.data(Qt::EditRole).toString().size())));
        editor = line;
    }
    editor->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    return editor;
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString cell = index.data(Qt::EditRole).toString();
    if (auto* box = qobject_cast<QComboBox*>(editor)) {
        // The cell holds the id, or what the list shows for it.
        const int entry = box->findData(cell);
        box->setCurrentIndex(entry >= 0 ? entry : box->findText(cell));
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(cell);
    }
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    if (const auto* box = qobject_cast<QComboBox*>(editor)) {
        if (box->currentIndex() >= 0)
            model->setData(index, box->currentData());
    } else if (const auto* line = qobject_cast<QLineEdit*>(editor);
               line && line->text() != index.data(Qt::EditRole)) {
        model->setData(index, line->text());
    }
}

bool GridDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const bool isCutOff = sizeHint(option, index).width() > view->visualRect(index).width();
    // A record's text is no markup, whatever it looks like.
    QToolTip::showText(event->globalPos(), isCutOff ? index.data().toString().toHtmlEscaped() : QString(),
                       view);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    // The bar says where the cursor is: no frame around a single cell.
    option->state &= ~QStyle::State_HasFocus;
    if (option->state & QStyle::State_Enabled)
        return;
    const QPalette& palette = option->palette;
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const QColor bar = Blend(base, palette.color(QPalette::Active, QPalette::Highlight), 0.3);
    option->palette.setColor(QPalette::Disabled, QPalette::Highlight, bar);
    for (const auto role : {QPalette::Text, QPalette::HighlightedText}) // it can be read while it waits
        option->palette.setColor(QPalette::Disabled, role, palette.color(QPalette::Active, QPalette::Text));
}

} // namespace sysadmin

#include "moc_GridDelegate.cpp"
