#pragma once

#include <QJsonObject>
#include <QString>

class QWidget;

namespace sysadmin {

/// What a window offers, for tests and documentation: `screen` (its object name), `state`, `title`,
/// `helpContext` and `controls`, an array of objects in tab order (what takes no focus follows, top to
/// bottom): `name`, `class`, `text` (its own caption), `label` (the caption of the label that belongs to it),
/// `toolTip`, `accessibleName` and `role` (what a screen reader hears of it), `enabled`, `visible` (once its
/// tab is chosen), `value`, `items` (of a list to choose from), `columns` (of a grid) and `page` (the tab
/// that it stands on). Captions are as declared: the dynamic property `caption` where one is set. A grid's
/// value is its first rows, the visible cells of each.
QJsonObject DescribeWindow(const QWidget& window, const QString& state, int helpContext);

/// Writes a window's picture and description as NAME.STATE.png and NAME.STATE.json into the folder. Answers
/// what went wrong, or an empty text.
QString WriteDescription(QWidget& window, const QString& folder, const QString& state, int helpContext);

} // namespace sysadmin
