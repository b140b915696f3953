#include "core/HelpWindow.h"

#include "core/ScreenCatalogue.h"
#include "core/System.h"
#include "look/IconLoader.h"
#include "look/Resources.h"

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolBar>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

QString TopicFile(int helpContext) {
    return ":/help/" + QString::number(helpContext) + ".md";
}

const char* const ContentsFile = ":/help/contents.md";

// Topics stand at ":/help"; the contents page ends with the screens of the program that runs, as the
// navigation bar has them.
class TopicBrowser : public QTextBrowser {
public:
    TopicBrowser(const ScreenCatalogue& catalogue, QWidget* parent)
        : QTextBrowser(parent)
        , m_catalogue(catalogue) {}

    QVariant loadResource(int type, const QUrl& name) override {
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (name.fileName() == "contents.md")
            return QByteArray(resource.toByteArray() + ScreenList().toUtf8());
        return resource;
    }

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override {
        QTextBrowser::doSetSource(name, type);
        LoosenParagraphs();
    }

private:
    QString ScreenList() const {
        QString list;
        for (const ScreenGroup& group : m_catalogue.Groups()) {
            QString topics;
            for (const ScreenEntry& entry : m_catalogue.Entries())
                if (entry.groupKey == group.key && QFile::exists(TopicFile(entry.screen.helpContext)))
                    topics += QString("- [%1](%2.md)\n")
                                  .arg(QString(entry.caption).replace("&&", "&"))
                                  .arg(entry.screen.helpContext);
            if (!topics.isEmpty())
                list += "\n### " + group.caption + "\n\n" + topics;
        }
        return list;
    }

    // Markdown brings no spacing of its own; running text set solid is hard to read.
    void LoosenParagraphs() {
        for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
            QTextBlockFormat format = block.blockFormat();
            format.setLineHeight(128, QTextBlockFormat::ProportionalHeight);
            if (format.headingLevel() > 0) {
                format.setTopMargin(block == document()->begin() ? 0 : 16);
                format.setBottomMargin(6);
            }
            QTextCursor(block).setBlockFormat(format);
        }
        document()->setModified(false);
    }

    const ScreenCatalogue& m_catalogue;
};

} // namespace

HelpWindow::HelpWindow(const ScreenCatalogue& catalogue, QWidget* parent)
    : QWidget(parent, Qt::Window) {
    LoadResources();
    setObjectName("frmHelp");
    setWindowTitle(tr("System Administration Help"));
    setWindowIcon(LoadIcon("Help"));
    resize(680, 720);

    txtTopic = new TopicBrowser(catalogue, this);
    txtTopic->setObjectName("txtTopic");
    txtTopic->setAccessibleName(tr("Help topic"));
    txtTopic->setFrameShape(QFrame::NoFrame);
    txtTopic->setOpenExternalLinks(true);
    txtTopic->document()->setDocumentMargin(28);

    auto* tools = new QToolBar(this);
    tools->setObjectName("tbrHelp");
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto addTool = [&](const QString& name, const QString& icon, const QString& caption,
                             const QKeySequence& keys, auto&& act) {
        QAction* action = tools->addAction(LoadIcon(icon), caption);
        action->setObjectName(name);
        action->setShortcut(keys);
        action->setToolTip(QString(caption).remove('&') + " (" + keys.toString(QKeySequence::NativeText) +
                           ")");
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    QAction* back = addTool("cmdBack", "Back", tr("&Back"), QKeySequence(Qt::ALT | Qt::Key_Left),
                            [this] { txtTopic->backward(); });
    QAction* forward = addTool("cmdForward", "Forward", tr("&Forward"), QKeySequence(Qt::ALT | Qt::Key_Right),
                               [this] { txtTopic->forward(); });
    addTool("cmdContents", "Contents", tr("&Contents"), QKeySequence(Qt::ALT | Qt::Key_Home),
            [this] { txtTopic->setSource(QUrl(QString("qrc") + ContentsFile)); });
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(txtTopic, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(txtTopic, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tools);
    layout->addWidget(txtTopic, 1);
}

void HelpWindow::ShowTopic(int helpContext) {
    const QString topic = TopicFile(helpContext);
    txtTopic->setSource(QUrl("qrc" + (QFile::exists(topic) ? topic : QString(ContentsFile))));
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    txtTopic->setFocus();
}

void HelpWindow::ShowOver(QDialog& dialog, const ScreenCatalogue& catalogue, int helpContext) {
    if (ShowCompiledHelp(helpContext))
        return;
    auto* help = dialog.findChild<HelpWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (!help) {
        help = new HelpWindow(catalogue, &dialog);
        connect(&dialog, &QDialog::finished, help, &QWidget::close);
    }
    help->ShowTopic(helpContext);
}

} // namespace sysadmin

#include "moc_HelpWindow.cpp"
