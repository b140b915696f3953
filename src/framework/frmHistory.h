#pragma once

#include "framework/RecordHistory.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTimer;

namespace sysadmin {

class FormView;
class ListGrid;
struct HistoryFilterForm;

/// Shows who changed a record, when, from where and how: the entries of its history and, of the selected one,
/// each field before and after. What was there before can be brought back: the dialog is accepted then.
class frmHistory : public QDialog {
    Q_OBJECT

public:
    frmHistory(Application& application, RecordHistory& history, QWidget* parent);
    ~frmHistory() override;

    /// The record before the change that was chosen, and the fields that are to be brought back; none: all.
    const RecordState& State() const { return m_state; }
    const QList<int>& Fields() const { return m_fields; }

private:
    void BuildButtons();
    /// Finds out what another entry changed; one at a time, so that the operator need not wait for them.
    void ReadNext();
    void ReadMore();
    const QList<FieldChange>* ChangesOf(qsizetype entry);
    QString Summary(qsizetype entry) const;
    bool IsShown(qsizetype entry) const;
    GridRow RowOf(qsizetype entry) const;
    void ShowEntries();
    void ShowFields();
    void OfferFields();
    void Export();
    void BringBack(bool whole);
    qsizetype Selected() const;

    Application& m_application;
    RecordHistory& m_history;
    QHash<qsizetype, QList<FieldChange>> m_changes;
    RecordState m_state;
    QList<int> m_fields;
    std::unique_ptr<HistoryFilterForm> m_filter;
    std::unique_ptr<FormView> m_view; // behind the form: it goes first
    ListGrid* vsfEntries = nullptr;
    ListGrid* vsfFields = nullptr;
    QLabel* lblNote = nullptr;
    QPushButton* cmdBringBackValue = nullptr;
    QPushButton* cmdBringBackRecord = nullptr;
    QPushButton* cmdMore = nullptr;
    QTimer* m_timer = nullptr;
    qsizetype m_next = 0; // entry whose changes are to be found out
};

/// Who made a change, by name and id; from which computer.
QString WhoInWords(const QString& name, const QString& operatorId);
QString PeerInWords(const QString& peer);

/// Shows the history of a record, and brings back what the operator chooses there: on the screen that
/// maintains such records, where it can be saved. True when he did. A failure is reported.
bool ShowRecordHistory(Application& application, QWidget* parent, const HistoryRecord& record);

} // namespace sysadmin
