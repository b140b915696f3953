#include "exact/Rig.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QCheckBox>
#include <QComboBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace sysadmin::exact {

namespace {

bool IsLine(const Field& field) {
    return field.kind == u"text" || field.kind == u"number" || field.kind == u"interval";
}

QComboBox* UnitOf(QWidget& root, const Field& field) {
    QWidget* around = Find<QLineEdit>(root, field.control).parentWidget();
    return around->findChild<QComboBox*>();
}

void Type(QLineEdit& edit, const QString& text) {
    edit.selectAll();
    if (text.isEmpty())
        edit.del();
    else
        edit.insert(text);
    emit edit.editingFinished();
}

QString EntriesOf(const QList<PickItem>& items) {
    QString line;
    for (const PickItem& item : items)
        line += item.id + ":" + item.text + "|";
    return line;
}

QList<PickItem> ItemsOf(const QComboBox& box) {
    QList<PickItem> items;
    for (int i = 0; i < box.count(); ++i)
        items.append({box.itemData(i).toString(), box.itemText(i)});
    return items;
}

/// Chooses an entry by its data; says no when there is none.
bool Choose(QComboBox& box, const QString& id) {
    const int index = box.findData(id);
    if (index < 0)
        return false;
    box.setCurrentIndex(index);
    emit box.activated(index);
    return true;
}

} // namespace

QWidget* ControlOf(QWidget& root, const Field& field) {
    if (IsLine(field))
        return &Find<QLineEdit>(root, field.control);
    if (field.kind == u"flag")
        return &Find<QCheckBox>(root, field.control);
    if (field.kind == u"choice")
        return &Find<QComboBox>(root, field.control);
    if (field.kind == u"date")
        return &Find<QLineEdit>(root, field.control);
    if (field.kind == u"lines")
        return &Find<QPlainTextEdit>(root, field.control);
    if (field.kind == u"letter")
        return &Find<QRadioButton>(root, field.control + field.entries.first().id);
    if (field.kind == u"picked")
        return &Find<ListGrid>(root, field.available);
    return &Find<QWidget>(root, field.control);
}

QString CaptionOf(QWidget& root, const Field& field) {
    QWidget* control = ControlOf(root, field);
    if (field.kind == u"flag")
        return DeclaredCaption(*control);
    for (const QLabel* label : root.findChildren<QLabel*>())
        if (QWidget* buddy = label->buddy())
            if (buddy == control ||
                (field.kind == u"letter" && buddy->objectName().startsWith(field.control)))
                return DeclaredCaption(*label);
    return {};
}

QString ShownValue(QWidget& root, const Field& field) {
    QWidget* control = ControlOf(root, field);
    if (field.kind == u"interval") {
        const QString number = static_cast<QLineEdit*>(control)->text();
        return number.isEmpty() ? QString() : UnitOf(root, field)->currentData().toString() + number;
    }
    if (IsLine(field))
        return static_cast<QLineEdit*>(control)->text();
    if (field.kind == u"flag")
        return static_cast<QCheckBox*>(control)->isChecked() ? "Y" : "N";
    if (field.kind == u"choice")
        return static_cast<QComboBox*>(control)->currentData().toString();
    if (field.kind == u"lines")
        return static_cast<QPlainTextEdit*>(control)->toPlainText();
    if (field.kind == u"date") {
        const QDate date = QLocale().toDate(static_cast<QLineEdit*>(control)->text(), DateForm());
        return date.isValid() ? date.toString(field.format) + field.suffix : QString();
    }
    for (const PickItem& option : field.entries)
        if (Find<QRadioButton>(root, field.control + option.id).isChecked())
            return option.id;
    return {};
}

bool IsOpen(QWidget& root, const Field& field) {
    QWidget* control = ControlOf(root, field);
    if (!control->isEnabledTo(&root))
        return false;
    return !control->property("readOnly").toBool();
}

void Enter(QWidget& root, const Field& field, const QString& value) {
    QWidget* control = ControlOf(root, field);
    if (!IsOpen(root, field))
        throw std::runtime_error(field.control.toStdString() + " takes no input");
    if (field.kind == u"interval") {
        if (!value.isEmpty() && !Choose(*UnitOf(root, field), value.left(1)))
            throw std::runtime_error(field.control.toStdString() + " lacks a unit");
        Type(static_cast<QLineEdit&>(*control), value.mid(1));
    } else if (IsLine(field)) {
        Type(static_cast<QLineEdit&>(*control), value);
    } else if (field.kind == u"flag") {
        if ((value == u"Y") != static_cast<QCheckBox*>(control)->isChecked())
            static_cast<QCheckBox*>(control)->click();
    } else if (field.kind == u"choice") {
        if (!Choose(static_cast<QComboBox&>(*control), value))
            throw std::runtime_error(field.control.toStdString() + " lacks " + value.toStdString());
    } else if (field.kind == u"lines") {
        static_cast<QPlainTextEdit*>(control)->setPlainText(value);
    } else if (field.kind == u"date") {
        const QDate date = QDate::fromString(value.left(field.format.size()), field.format);
        Type(static_cast<QLineEdit&>(*control), QLocale().toString(date, DateForm()));
    } else if (field.kind == u"letter") {
        Find<QRadioButton>(root, field.control + value).click();
    }
}

QString LimitOf(QWidget& root, const Field& field) {
    QWidget* control = ControlOf(root, field);
    if (field.kind == u"text" && field.max > 0)
        return QString::number(static_cast<QLineEdit*>(control)->maxLength());
    if (field.kind == u"number" || field.kind == u"interval") {
        const auto* range = qobject_cast<const QIntValidator*>(static_cast<QLineEdit*>(control)->validator());
        if (field.kind == u"interval" && range)
            return EntriesOf(ItemsOf(*UnitOf(root, field))) + QString::number(range->top());
        return range ? QString("%1..%2").arg(range->bottom()).arg(range->top()) : QString();
    }
    if (field.kind == u"choice")
        return EntriesOf(ItemsOf(static_cast<QComboBox&>(*control)));
    if (field.kind != u"letter")
        return {};
    QList<PickItem> options;
    for (const PickItem& option : field.entries)
        options.append(
            {option.id, DeclaredCaption(Find<QRadioButton>(root, field.control + option.id)).remove('&')});
    return EntriesOf(options);
}

QString WantedLimit(const Field& field) {
    if (field.kind == u"text" && field.max > 0)
        return QString::number(field.max);
    if (field.kind == u"number")
        return QString("%1..%2").arg(qMin(0, field.least)).arg(field.most);
    if (field.kind == u"interval")
        return EntriesOf(field.entries) + QString::number(field.most);
    QList<PickItem> items = field.entries;
    if (field.kind == u"choice" && !field.source.request.isEmpty())
        items = {{"10", "Entry 10"}, {"11", "Entry 11"}};
    if (!field.source.none.isEmpty())
        items.prepend({{}, field.source.none});
    return field.kind == u"choice" || field.kind == u"letter" ? EntriesOf(items) : QString();
}

} // namespace sysadmin::exact
