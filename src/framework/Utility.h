#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QWidget;

namespace sysadmin {

class Application;

/// Asks whether the item may be deleted; true only for Yes.
bool ConfirmDelete(Application& application, QWidget* parent, const QString& subject,
                   const QString& itemText);
/// The same for an item that is named by more than one value.
bool ConfirmDeleteEx(Application& application, QWidget* parent, const QString& subject,
                     const QStringList& values);
/// Asks whether what was entered may be thrown away.
bool ConfirmDiscard(Application& application, QWidget* parent);
/// Says that an edit is open and must be saved or cancelled first.
void WarnEditInProgress(Application& application, QWidget* parent);
/// Says that a list could not be loaded: "Unable to load " + caption + ".".
void ReportUnableToLoad(Application& application, QWidget* parent, const QString& caption);
/// The word for the records in the name of a request that reads them: "VenTp" of "LstVenTp" and "GetVenTp".
QString SubjectOf(const QString& request);
/// The controls follow each other when Tab is pressed.
void InTabOrder(const QList<QWidget*>& controls);
/// Turns the list side off and the edit side on, or the other way round.
void SetEditMode(bool editing, const QList<QWidget*>& listSide, const QList<QWidget*>& editSide);

} // namespace sysadmin
