#include "framework/Captions.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QSet>
#include <QTabWidget>
#include <QVariant>

namespace sysadmin {

namespace {

constexpr char CaptionProperty[] = "caption";
constexpr char MnemonicsProperty[] = "mnemonics"; // of a root whose captions have been given theirs
// The main window's menus answer to these wherever the focus is.
constexpr char16_t MenuLetters[] = u"FTH";

QChar MnemonicOf(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '&')
            continue;
        if (text[i + 1] != '&')
            return text[i + 1].toUpper();
        ++i;
    }
    return {};
}

/// The text with a mnemonic on a letter that is still free: a word's first letter if one is, else any letter.
QString WithMnemonic(const QString& text, QSet<QChar>& used) {
    for (const bool wordStart : {true, false})
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar letter = text[i].toUpper();
            const bool fits = letter.isLetterOrNumber() && letter.unicode() < 128 && !used.contains(letter);
            if (fits && (!wordStart || i == 0 || !text[i - 1].isLetterOrNumber())) {
                used.insert(letter);
                return text.left(i) + "&" + text.mid(i);
            }
        }
    return text;
}

/// One text that can carry a mnemonic.
struct Carrier {
    QWidget* widget = nullptr;
    int tab = -1; ///< of a tab widget's tab; -1 for the widget's own text
};

QString TextOf(const Carrier& carrier) {
    if (carrier.tab >= 0)
        return static_cast<QTabWidget*>(carrier.widget)->tabText(carrier.tab);
    if (auto* label = qobject_cast<QLabel*>(carrier.widget))
        return label->text();
    return static_cast<QAbstractButton*>(carrier.widget)->text();
}

void SetText(const Carrier& carrier, const QString& text) {
    if (carrier.tab >= 0)
        static_cast<QTabWidget*>(carrier.widget)->setTabText(carrier.tab, text);
    else if (auto* label = qobject_cast<QLabel*>(carrier.widget))
        label->setText(text);
    else
        static_cast<QAbstractButton*>(carrier.widget)->setText(text);
}

/// What shows together: the carriers outside any page below `root`, then each page by itself.
void Collect(QWidget& root, QList<Carrier>& carriers, QList<QWidget*>& pages) {
    for (QObject* child : root.children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (!widget || widget->objectName().startsWith("qt_calendar"))
            continue; // a date's calendar is a window of its own
        if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
            for (int i = 0; i < tabs->count(); ++i) {
                carriers.append({tabs, i});
                pages.append(tabs->widget(i));
            }
            continue;
        }
        auto* label = qobject_cast<QLabel*>(widget);
        auto* button = qobject_cast<QAbstractButton*>(widget);
        if ((label && label->buddy()) || (button && !button->text().isEmpty()))
            carriers.append({widget});
        Collect(*widget, carriers, pages);
    }
}

/// Takes back what was assigned before, so that all letters are free but those that captions were declared
/// with.
void TakeBack(QWidget& root) {
    QList<Carrier> carriers;
    QList<QWidget*> pages;
    Collect(root, carriers, pages);
    for (const Carrier& carrier : carriers) {
        const QWidget* declares =
            carrier.tab < 0 ? carrier.widget : static_cast<QTabWidget*>(carrier.widget)->widget(carrier.tab);
        if (const QVariant caption = declares->property(CaptionProperty); caption.isValid())
            SetText(carrier, caption.toString());
    }
    for (QWidget* page : pages)
        TakeBack(*page);
}

void Assign(QWidget& root, QSet<QChar> used) {
    QList<Carrier> carriers;
    QList<QWidget*> pages;
    Collect(root, carriers, pages);
    for (const Carrier& carrier : carriers)
        used.insert(MnemonicOf(TextOf(carrier)));
    // Letters that a page's own captions were declared with stay theirs.
    QSet<QChar> reserved = used;
    for (QWidget* page : pages) {
        QList<Carrier> inner;
        QList<QWidget*> innerPages;
        Collect(*page, inner, innerPages);
        for (const Carrier& carrier : inner)
            reserved.insert(MnemonicOf(TextOf(carrier)));
    }
    for (const Carrier& carrier : carriers)
        if (MnemonicOf(TextOf(carrier)).isNull()) {
            if (carrier.tab < 0 && !carrier.widget->property(CaptionProperty).isValid())
                SetDeclaredCaption(*carrier.widget, TextOf(carrier));
            SetText(carrier, WithMnemonic(TextOf(carrier), reserved));
            used.insert(MnemonicOf(TextOf(carrier)));
        }
    for (QWidget* page : pages)
        Assign(*page, used);
}

} // namespace

void SetDeclaredCaption(QWidget& widget, const QString& caption) {
    widget.setProperty(CaptionProperty, caption);
}

QString DeclaredCaption(const QWidget& widget) {
    const QVariant caption = widget.property(CaptionProperty);
    if (caption.isValid())
        return caption.toString();
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
        return group->title();
    return {};
}

void AssignMnemonics(QWidget& root) {
    QSet<QChar> used;
    for (const char16_t* letter = MenuLetters; *letter; ++letter)
        used.insert(QChar(*letter));
    TakeBack(root);
    Assign(root, used);
    root.setProperty(MnemonicsProperty, true);
}

void ChangeCaption(QWidget& widget, const QString& caption) {
    if (DeclaredCaption(widget) == caption)
        return;
    SetDeclaredCaption(widget, caption);
    SetText({&widget}, caption);
    for (QWidget* root = &widget; root; root = root->parentWidget())
        if (root->property(MnemonicsProperty).toBool()) {
            AssignMnemonics(*root);
            return;
        }
}

} // namespace sysadmin
