#pragma once

#include "core/Application.h"
#include "core/Prompter.h"
#include "core/Screen.h"
#include "core/data/RequestChannel.h"
#include "exact/ExactTables.h"
#include "support/FakeCommunication.h"

#include <memory>

namespace sysadmin::exact {

/// A server that answers every request in the way it was told to, and keeps what it was sent.
class AnsweringChannel : public RequestChannel {
public:
    struct Reply {
        qint16 status = 0;
        wire::Fields fields = {};
    };
    /// Answers this request so from now on.
    void Always(const QString& name, const Reply& reply) { m_always[name] = reply; }
    /// Answers the next one so.
    void Once(const QString& name, const Reply& reply) { m_once[name].append(reply); }
    /// What was sent since it was last asked: a line per request.
    QStringList TakeSent() { return std::exchange(m_sent, {}); }
    bool SignOn(Session&) override { return true; }
    const QString& LastProblem() const override { return m_problem; }

protected:
    Answer Exchange(const QString& name, const wire::Fields& fields) override;

private:
    QHash<QString, Reply> m_always;
    QHash<QString, QList<Reply>> m_once;
    QStringList m_sent;
    QString m_problem;
};

/// A request as a line of text.
QString Line(const QString& name, const wire::Fields& fields = {});

/// An operator who answers every question in the same way, and keeps what he was told: a line per box, and
/// per error dialog its message, status, operation and screen.
class NotingPrompter : public Prompter {
public:
    bool answer = true;
    QStringList TakeTold() { return std::exchange(m_told, {}); }

    bool ShowBox(QWidget* parent, const Box& box) override;
    bool RunDialog(QDialog& dialog) override;
    QString AskSaveFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString AskOpenFile(QWidget*, const QString&, const QString&) override { return {}; }
    QString AskFolder(QWidget*, const QString&, const QString&) override { return {}; }

private:
    QStringList m_told;
};

/// How a failure of this status is told.
QString Report(qint16 status, const QString& operation, const QString& screenName);
QString Told(const QString& text, const QString& title = ApplicationTitle());

/// One screen with such a server and operator.
class Rig {
public:
    /// The operator may edit what belongs to the screen's area, and nothing else, or everything but that.
    Rig(const Screen& screen, bool mayEdit);
    ~Rig();
    /// Makes the screen, altered in this way, and loads it.
    sysadmin::Screen& Open(const std::function<void(ScreenDeclaration&)>& alter);

    AnsweringChannel channel;
    FakeCommunication comm{channel};
    NotingPrompter prompter;
    Application app{comm, prompter};
    QStringList notices; ///< subjects that the screen announced
    std::unique_ptr<sysadmin::Screen> screen;

private:
    const Screen& m_rows;
};

/// Contributes every screen of the program.
void AddAllScreens(ScreenCatalogue& catalogue);

// Controls, as an operator meets them.

/// The control of a field; fails by an exception when there is none.
QWidget* ControlOf(QWidget& root, const Field& field);
/// The caption that was declared for it; for a control without a label nothing.
QString CaptionOf(QWidget& root, const Field& field);
/// What the control shows, as the text that travels.
QString ShownValue(QWidget& root, const Field& field);
/// Whether it takes input.
bool IsOpen(QWidget& root, const Field& field);
/// Gives it a value as an operator would.
void Enter(QWidget& root, const Field& field, const QString& value);
/// Its limit, or range, or entries, in words.
QString LimitOf(QWidget& root, const Field& field);
QString WantedLimit(const Field& field);

template <class Widget>
Widget& Find(QWidget& root, const QString& name) {
    auto* widget = root.findChild<Widget*>(name);
    if (!widget)
        throw std::runtime_error("no control " + name.toStdString());
    return *widget;
}

} // namespace sysadmin::exact
