#include "core/Describe.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>
#include <QTreeView>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int MostRows = 50; // of a grid

// The nearest ancestor of a class, up to the window.
template <class Widget>
const Widget* Ancestor(const QWidget* widget, const QWidget* window) {
    for (const QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* found = qobject_cast<const Widget*>(parent))
            return found;
        if (parent == window)
            break;
    }
    return nullptr;
}

// Parts of a control are no controls: a spin box's line edit, a grid's header and scroll bars.
bool IsPart(const QWidget* widget, const QWidget* window) {
    return Ancestor<QComboBox>(widget, window) || Ancestor<QAbstractSpinBox>(widget, window) ||
           Ancestor<QLineEdit>(widget, window) || Ancestor<QAbstractItemView>(widget, window) ||
           Ancestor<QTextEdit>(widget, window) || Ancestor<QPlainTextEdit>(widget, window) ||
           Ancestor<QTabBar>(widget, window) || qobject_cast<const QScrollBar*>(widget);
}

bool IsControl(const QWidget* widget, const QWidget* window) {
    if (widget->objectName().startsWith("qt_") || widget->isWindow() || IsPart(widget, window))
        return false;
    return !widget->objectName().isEmpty() || qobject_cast<const QLabel*>(widget) ||
           qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QGroupBox*>(widget);
}

bool TakesFocus(const QWidget* widget) {
    return widget->focusPolicy() & Qt::TabFocus;
}

QList<const QWidget*> ControlsOf(const QWidget& window) {
    QList<const QWidget*> inTabOrder;
    QList<const QWidget*> others;
    for (const QWidget* widget = window.nextInFocusChain(); widget && widget != &window;
         widget = widget->nextInFocusChain())
        if (window.isAncestorOf(widget) && IsControl(widget, &window))
            (TakesFocus(widget) ? inTabOrder : others).append(widget);
    const auto place = [&](const QWidget* widget) {
        const QPoint position = widget->mapTo(&window, QPoint(0, 0));
        return std::pair(position.y(), position.x());
    };
    std::stable_sort(others.begin(), others.end(),
                     [&](const QWidget* a, const QWidget* b) { return place(a) < place(b); });
    return inTabOrder + others;
}

QString CaptionOf(const QWidget* widget) {
    if (const QVariant declared = widget->property("caption"); declared.isValid())
        return declared.toString();
    if (auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (auto* group = qobject_cast<const QGroupBox*>(widget))
        return group->title();
    return {};
}

QString TabCaption(const QTabWidget& tabs, int index) {
    const QVariant declared = tabs.widget(index)->property("caption");
    return declared.isValid() ? declared.toString() : tabs.tabText(index);
}

// The tab that the control stands on, with its tab widget's own in front when they are nested.
QString PageOf(const QWidget* widget, const QWidget* window) {
    QStringList pages;
    for (const QWidget* page = widget; page && page != window; page = page->parentWidget())
        if (auto* tabs = Ancestor<QTabWidget>(page, window))
            if (const int index = tabs->indexOf(const_cast<QWidget*>(page)); index >= 0)
                pages.prepend(TabCaption(*tabs, index));
    return pages.join(" / ");
}

bool IsTabPage(const QWidget* widget, const QWidget* window) {
    auto* tabs = Ancestor<QTabWidget>(widget, window);
    return tabs && tabs->indexOf(const_cast<QWidget*>(widget)) >= 0;
}

// A control on a tab that is not chosen is not hidden: the operator gets to it by a click.
bool IsShown(const QWidget* widget, const QWidget* window) {
    for (; widget && widget != window; widget = widget->parentWidget())
        if (widget->isHidden() && !IsTabPage(widget, window))
            return false;
    return true;
}

QList<int> VisibleColumns(const QAbstractItemView& view) {
    QList<int> columns;
    for (int column = 0; column < view.model()->columnCount(view.rootIndex()); ++column) {
        auto* table = qobject_cast<const QTableView*>(&view);
        auto* tree = qobject_cast<const QTreeView*>(&view);
        if (!(table && table->isColumnHidden(column)) && !(tree && tree->isColumnHidden(column)))
            columns.append(column);
    }
    return columns;
}

QJsonArray RowsOf(const QAbstractItemView& view, int most) {
    QJsonArray rows;
    const QAbstractItemModel* model = view.model();
    const QList<int> columns = VisibleColumns(view);
    const int count = model->rowCount(view.rootIndex());
    for (int row = 0; row < (most < 0 ? count : qMin(count, most)); ++row) {
        QJsonArray cells;
        for (const int column : columns)
            cells.append(model->index(row, column, view.rootIndex()).data().toString());
        rows.append(columns.size() == 1 ? cells.first() : QJsonValue(cells));
    }
    return rows;
}

QJsonArray ColumnsOf(const QAbstractItemView& view) {
    QJsonArray captions;
    for (const int column : VisibleColumns(view))
        captions.append(view.model()->headerData(column, Qt::Horizontal).toString());
    return captions;
}

QJsonValue ValueOf(const QWidget* widget) {
    if (auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->text();
    if (auto* edit = qobject_cast<const QTextEdit*>(widget))
        return edit->toPlainText();
    if (auto* edit = qobject_cast<const QPlainTextEdit*>(widget))
        return edit->toPlainText();
    if (auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->currentText();
    if (auto* spin = qobject_cast<const QAbstractSpinBox*>(widget))
        return spin->text();
    if (auto* box = qobject_cast<const QCheckBox*>(widget); box && box->checkState() == Qt::PartiallyChecked)
        return QString("partial");
    if (auto* button = qobject_cast<const QAbstractButton*>(widget); button && button->isCheckable())
        return button->isChecked();
    if (auto* group = qobject_cast<const QGroupBox*>(widget); group && group->isCheckable())
        return group->isChecked();
    if (auto* tabs = qobject_cast<const QTabWidget*>(widget); tabs && tabs->currentIndex() >= 0)
        return TabCaption(*tabs, tabs->currentIndex());
    if (auto* view = qobject_cast<const QAbstractItemView*>(widget); view && view->model())
        return RowsOf(*view, MostRows);
    return {};
}

QJsonArray ItemsOf(const QWidget* widget) {
    QJsonArray items;
    if (auto* combo = qobject_cast<const QComboBox*>(widget))
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
    else if (auto* tabs = qobject_cast<const QTabWidget*>(widget))
        for (int i = 0; i < tabs->count(); ++i)
            items.append(TabCaption(*tabs, i));
    else if (widget->inherits("QListView"))
        return RowsOf(*qobject_cast<const QAbstractItemView*>(widget), -1);
    return items;
}

// What a screen reader calls the kind of control ("EditableText").
QString RoleOf(const QAccessibleInterface& spoken) {
    return QMetaEnum::fromType<QAccessible::Role>().valueToKey(spoken.role());
}

// The class as Qt knows it, where the control's own is one of ours.
QString ClassOf(const QWidget* widget) {
    const QMetaObject* type = widget->metaObject();
    while (type && QByteArray(type->className()).contains("::"))
        type = type->superClass();
    return type ? QString(type->className()) : QString("QWidget");
}

} // namespace

QJsonObject DescribeWindow(const QWidget& window, const QString& state, int helpContext) {
    QHash<const QWidget*, QString> labels;
    for (const QLabel* label : window.findChildren<QLabel*>())
        if (label->buddy())
            labels[label->buddy()] = CaptionOf(label);

    QJsonArray controls;
    for (const QWidget* widget : ControlsOf(window)) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        QJsonObject control{
            {"name", widget->objectName()},   {"class", ClassOf(widget)},
            {"text", CaptionOf(widget)},      {"label", labels.value(widget)},
            {"toolTip", widget->toolTip()},   {"accessibleName", spoken->text(QAccessible::Name)},
            {"enabled", widget->isEnabled()}, {"visible", IsShown(widget, &window)},
            {"value", ValueOf(widget)},       {"items", ItemsOf(widget)},
            {"columns", QJsonArray()},        {"page", PageOf(widget, &window)},
            {"role", RoleOf(*spoken)}};
        if (auto* view = qobject_cast<const QAbstractItemView*>(widget);
            view && view->model() && !widget->inherits("QListView"))
            control["columns"] = ColumnsOf(*view);
        controls.append(control);
    }
    return {{"screen", window.objectName()},
            {"state", state},
            {"title", window.windowTitle()},
            {"helpContext", helpContext},
            {"controls", controls}};
}

QString WriteDescription(QWidget& window, const QString& folder, const QString& state, int helpContext) {
    const QString base = QDir(folder).filePath(window.objectName() + "." + state);
    if (!window.grab().save(base + ".png"))
        return QString("Unable to write %1.png").arg(base);
    QSaveFile file(base + ".json");
    const QByteArray text = QJsonDocument(DescribeWindow(window, state, helpContext)).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return QString("Unable to write %1.json: %2").arg(base, file.errorString());
    return {};
}

} // namespace sysadmin
