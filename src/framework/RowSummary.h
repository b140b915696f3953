#pragma once

#include <QWidget>

class QFormLayout;
class QLabel;

namespace sysadmin {

/// What the list holds about the selected record: stands in the edit area while no record is open.
class RowSummary : public QWidget {
    Q_OBJECT

public:
    struct Line {
        QString caption;
        QString value;
        bool operator==(const Line&) const = default;
    };

    explicit RowSummary(QWidget* parent);

    /// Shows the record's name, what is known of it, and what the operator can do now.
    void Show(const QString& title, const QList<Line>& lines, const QString& hint);

protected:
    void changeEvent(QEvent* event) override;

private:
    void KeepContrast();

    QLabel* lblTitle = nullptr;
    QWidget* m_body = nullptr;
    QFormLayout* m_lines = nullptr;
    QLabel* lblHint = nullptr;
    QList<Line> m_shown;
};

} // namespace sysadmin
