#pragma once

#include <QLabel>

namespace sysadmin {

/// The line of a dialog that says what went wrong; hidden while all is well. Readable on light and dark
/// palettes, and told to screen readers.
class ProblemLabel : public QLabel {
    Q_OBJECT

public:
    explicit ProblemLabel(QWidget* parent);

    /// Shows the problem; an empty text hides the line.
    void SetProblem(const QString& problem);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Colour();
};

/// Gives a dialog that holds wrapped texts the height which they need at its width.
void FitHeight(QWidget& dialog, int width);

} // namespace sysadmin
