#pragma once

#include <QString>

class QWidget;

namespace sysadmin {

/// Notes on the widget the caption that it was declared with; mnemonics added later leave it as it is.
void SetDeclaredCaption(QWidget& widget, const QString& caption);
/// The noted caption, or the widget's text where none was noted.
QString DeclaredCaption(const QWidget& widget);

/// Gives the label or button another declared caption, with a mnemonic if the window around it has them.
void ChangeCaption(QWidget& widget, const QString& caption);

/// Gives every label with a buddy, every button, check box and tab below `root` a mnemonic of its own.
/// Captions that were declared with one keep it; pages of one tab widget may use the same letters, since only
/// one shows at a time.
void AssignMnemonics(QWidget& root);

} // namespace sysadmin
