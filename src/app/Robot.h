#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace sysadmin {

/// Works the real windows as an operator would, step by step: each step waits until the control it needs is
/// there and takes input, then acts on it with clicks and keys.
class Robot : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void(QWidget& control)>;

    /// `pictureFolder`: where pictures of the steps go; empty for none.
    explicit Robot(const QString& pictureFolder = {}, QObject* parent = nullptr);

    /// Adds a step: waits for the visible, enabled control of this name and acts on it.
    void Then(const QString& control, const Action& action);
    void Click(const QString& control);
    /// Replaces the text of a line edit.
    void Type(const QString& control, const QString& text);
    void Press(const QString& control, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Selects the row of a grid whose first cell has this text, by a click on it.
    void SelectRow(const QString& grid, const QString& text);
    /// Answers the message box that shows, by the text of its button.
    void Answer(const QString& button);
    /// Saves a picture of what the operator sees once the control is there: NN-name.png.
    void Picture(const QString& control, const QString& name);

    void Start();
    /// Steps that are still to come; 0 when all were done.
    qsizetype StepsLeft() const { return m_steps.size(); }
    /// What the robot was waiting for when it gave up; empty while it has not.
    const QString& Problem() const { return m_problem; }

signals:
    /// All steps were done.
    void Finished();
    /// A step's control did not come in time, or its action failed.
    void Failed(const QString& problem);

private:
    struct Step {
        QString control;
        Action action;
    };

    void ScheduleTick();
    void Tick();
    void Fail(const QString& problem);
    void SavePicture(const QString& name);

    QString m_pictureFolder;
    QList<Step> m_steps;
    int m_waited = 0;
    int m_pictures = 0;
    QString m_problem;
};

/// What the operator sees: the window and, on it, whatever dialog stands before it.
QPixmap PictureOfWindows();

} // namespace sysadmin
