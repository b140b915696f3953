#include "comm/SignOnDialog.h"

#include "comm/PasswordEncoder.h"
#include "comm/ProblemLabel.h"
#include "comm/WireChannel.h"
#include "core/Prompter.h"
#include "look/IconLoader.h"

#include <QComboBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int SignOnWidth = 460;
constexpr int WarningLinesAtMost = 7;
constexpr int WarningMargin = 10;

enum LibraryPlace { ThisComputer, SharedServer };

QLabel* MakeLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLineEdit* MakeEdit(const QString& name, const QString& text, QWidget* parent) {
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(name);
    return edit;
}

QLabel* MakeCaption(const QString& name, const QString& caption, QWidget* buddy) {
    auto* label = new QLabel(caption, buddy->parentWidget());
    label->setObjectName(name);
    label->setBuddy(buddy);
    label->setMinimumHeight(buddy->sizeHint().height()); // on the line of its field
    return label;
}

} // namespace

SignOnDialog::SignOnDialog(SignOnAttempts& attempts, const ServerChoice& choice, const QString& operatorId,
                           QWidget* parent)
    : QDialog(parent)
    , m_attempts(attempts) {
    setObjectName("frmSignOn");
    setProperty(HelpContextProperty, 50103);
    setWindowTitle(tr("%1 - Sign On").arg(ApplicationTitle()));
    BuildHeader();
    BuildFields(choice, operatorId);
    BuildButtons();
    Arrange();
    ShowChosenField();
    (operatorId.isEmpty() ? txtOperator : txtPassword)->setFocus();
}

SignOnDialog::~SignOnDialog() {
    WipeEdit(*txtPassword);
}

void SignOnDialog::BuildHeader() {
    lblLibraryName = MakeLabel("lblLibraryName", this);
    lblLibraryName->setText(ApplicationTitle());
    QFont font = lblLibraryName->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setWeight(QFont::DemiBold);
    lblLibraryName->setFont(font);
    lblServerState = MakeLabel("lblServerState", this);
    lblServerState->setForegroundRole(QPalette::PlaceholderText);

    txtWarning = new QPlainTextEdit(this);
    txtWarning->setObjectName("txtWarning");
    txtWarning->setAccessibleName(tr("Security warning"));
    txtWarning->setReadOnly(true);
    txtWarning->setTabChangesFocus(true);
    txtWarning->setFocusPolicy(Qt::ClickFocus);
    txtWarning->setFrameShape(QFrame::NoFrame);
    txtWarning->viewport()->setBackgroundRole(QPalette::AlternateBase);
    txtWarning->document()->setDocumentMargin(WarningMargin);
    txtWarning->hide();
}

void SignOnDialog::BuildFields(const ServerChoice& choice, const QString& operatorId) {
    txtOperator = MakeEdit("txtOperator", operatorId, this);
    txtPassword = MakeEdit("txtPassword", {}, this);
    txtPassword->setEchoMode(QLineEdit::Password);
    cboLibrary = new QComboBox(this);
    cboLibrary->setObjectName("cboLibrary");
    cboLibrary->addItems({tr("On this computer"), tr("On a shared server")});
    cboLibrary->setCurrentIndex(choice.server ? SharedServer : ThisComputer);
    txtFolder = MakeEdit("txtFolder", QDir::toNativeSeparators(choice.library), this);
    txtFolder->setAccessibleName(tr("Folder of the library"));
    txtFolder->setToolTip(tr("The folder of the library; a folder without one gets the sample library"));
    txtServer = MakeEdit("txtServer", choice.server ? choice.server->Text() : QString(), this);
    txtServer->setPlaceholderText(tr("host or host:port"));
    txtServer->setToolTip(tr("The computer on which the settings server runs, and its port unless that is %1")
                              .arg(ServerAddress::DefaultPort));

    m_form = new QFormLayout;
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setHorizontalSpacing(16);
    m_form->setVerticalSpacing(10);
    m_form->addRow(MakeCaption("lblOperator", tr("&Operator:"), txtOperator), txtOperator);
    m_form->addRow(MakeCaption("lblPassword", tr("&Password:"), txtPassword), txtPassword);
    m_form->addRow(MakeCaption("lblLibrary", tr("&Library:"), cboLibrary), cboLibrary);
    m_lblFolder = MakeCaption("lblFolder", tr("&Folder:"), txtFolder);
    m_folderLine = new QWidget(this);
    auto* folderLine = new QHBoxLayout(m_folderLine);
    folderLine->setContentsMargins({});
    folderLine->addWidget(txtFolder, 1);
    cmdFolder = new QPushButton(tr("&Browse..."), m_folderLine);
    cmdFolder->setObjectName("cmdFolder");
    cmdFolder->setAutoDefault(false);
    cmdFolder->setToolTip(tr("Choose the folder of the library"));
    folderLine->addWidget(cmdFolder);
    m_form->addRow(m_lblFolder, m_folderLine);
    m_lblServer = MakeCaption("lblServer", tr("&Server:"), txtServer);
    m_form->addRow(m_lblServer, txtServer);

    connect(cboLibrary, &QComboBox::activated, this, [this] {
        ShowChosenField();
        if (cboLibrary->currentIndex() == SharedServer)
            txtServer->setFocus();
        GreetServer();
    });
    connect(txtFolder, &QLineEdit::editingFinished, this, &SignOnDialog::GreetServer);
    connect(cmdFolder, &QPushButton::clicked, this, [this] {
        const QString folder = m_attempts.ChooseFolder(this, txtFolder->text().trimmed());
        if (folder.isEmpty())
            return;
        txtFolder->setText(QDir::toNativeSeparators(folder));
        GreetServer();
    });
    connect(txtServer, &QLineEdit::editingFinished, this, &SignOnDialog::GreetServer);
}

void SignOnDialog::BuildButtons() {
    lblHint = MakeLabel("lblHint", this);
    lblHint->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblHint->setForegroundRole(QPalette::PlaceholderText);
    lblHint->hide();
    lblProblem = new ProblemLabel(this);
    cmdAcceptCertificate = new QPushButton(tr("&Accept the New Certificate..."), this);
    cmdAcceptCertificate->setObjectName("cmdAcceptCertificate");
    cmdAcceptCertificate->setAutoDefault(false);
    cmdAcceptCertificate->hide();
    cmdOK = new QPushButton(tr("Sign O&n"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName("cmdCancel");
    cmdCancel->setAutoDefault(false);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdAcceptCertificate, &QPushButton::clicked, this, &SignOnDialog::AcceptCertificate);
}

void SignOnDialog::Arrange() {
    auto* imgProgram = new QLabel(this);
    imgProgram->setObjectName("imgProgram");
    imgProgram->setPixmap(LoadIcon("Program").pixmap(QSize(48, 48), devicePixelRatioF()));
    auto* titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(lblLibraryName);
    titles->addWidget(lblServerState);
    auto* header = new QHBoxLayout;
    header->setSpacing(16);
    header->addWidget(imgProgram, 0, Qt::AlignTop);
    header->addLayout(titles, 1);
    m_colour = new QWidget(this);
    m_colour->setFixedWidth(6);
    m_colour->setAutoFillBackground(true);
    m_colour->hide();
    header->addWidget(m_colour);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 20);
    layout->setSpacing(16);
    layout->addLayout(header);
    layout->addWidget(txtWarning);
    layout->addLayout(m_form);
    layout->addWidget(lblHint);
    layout->addWidget(lblProblem);
    layout->addWidget(cmdAcceptCertificate, 0, Qt::AlignLeft);
    layout->addSpacing(4);
    layout->addLayout(buttons);
}

void SignOnDialog::ShowChosenField() {
    const bool shared = cboLibrary->currentIndex() == SharedServer;
    m_form->setRowVisible(m_folderLine, !shared);
    m_form->setRowVisible(txtServer, shared);
    FitHeight(*this, SignOnWidth);
}

std::optional<ServerChoice> SignOnDialog::Choice() const {
    if (cboLibrary->currentIndex() == ThisComputer) {
        const QString folder = QDir::fromNativeSeparators(txtFolder->text().trimmed());
        return folder.isEmpty() ? std::nullopt : std::optional(ServerChoice{{}, folder});
    }
    const std::optional<ServerAddress> server = ParseServerAddress(txtServer->text());
    return server ? std::optional(ServerChoice{server, {}}) : std::nullopt;
}

void SignOnDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // The dialog is there before the server is asked: that may take its time.
    QTimer::singleShot(0, this, &SignOnDialog::GreetServer);
}

void SignOnDialog::GreetServer() {
    const std::optional<ServerChoice> choice = Choice();
    if (m_busy || !isVisible() || choice == m_greeted)
        return;
    m_greeted = choice;
    if (!choice) {
        ShowGreeting({});
        lblServerState->clear();
        return;
    }
    m_busy = true;
    lblServerState->setText(choice->server ? tr("Connecting to %1 ...").arg(choice->server->Text())
                                           : tr("Opening the library ..."));
    repaint();
    ShowGreeting(m_attempts.Greet(*choice));
    m_busy = false;
}

void SignOnDialog::ShowGreeting(const Greeting& greeting) {
    const bool answered = greeting.problem.isEmpty();
    lblLibraryName->setText(greeting.libraryName.isEmpty() ? ApplicationTitle() : greeting.libraryName);
    lblServerState->setText(answered ? ApplicationTitle() : tr("Not connected"));
    const QColor own(greeting.colour);
    m_colour->setVisible(own.isValid());
    m_colour->setPalette(QPalette(own));
    lblHint->setText(greeting.hint);
    lblHint->setVisible(!greeting.hint.isEmpty());
    txtWarning->setPlainText(QString(greeting.warning).replace("\r\n", "\n"));
    txtWarning->setVisible(!greeting.warning.isEmpty());
    if (!greeting.warning.isEmpty()) {
        const int inner =
            SignOnWidth - layout()->contentsMargins().left() - layout()->contentsMargins().right();
        const QRect text = txtWarning->fontMetrics().boundingRect(
            QRect(0, 0, inner - 2 * WarningMargin, 10000), Qt::TextWordWrap, txtWarning->toPlainText());
        const int most = txtWarning->fontMetrics().lineSpacing() * WarningLinesAtMost;
        txtWarning->setVerticalScrollBarPolicy(text.height() > most ? Qt::ScrollBarAsNeeded
                                                                    : Qt::ScrollBarAlwaysOff);
        txtWarning->setFixedHeight(qMin(text.height(), most) + 2 * WarningMargin);
    }
    ShowProblem(greeting.problem);
}

void SignOnDialog::ShowProblem(const QString& problem) {
    lblProblem->SetProblem(problem);
    cmdAcceptCertificate->setVisible(!problem.isEmpty() && m_attempts.CertificateChanged());
    FitHeight(*this, SignOnWidth);
}

void SignOnDialog::accept() {
    if (m_busy)
        return;
    const std::optional<ServerChoice> choice = Choice();
    if (!choice) {
        const bool shared = cboLibrary->currentIndex() == SharedServer;
        (shared ? txtServer : txtFolder)->setFocus();
        ShowProblem(shared ? tr("Enter the server as host or host:port.")
                           : tr("Enter the folder of the library."));
        return;
    }
    const QString operatorId = txtOperator->text().trimmed();
    if (operatorId.isEmpty() || txtPassword->text().isEmpty()) {
        (operatorId.isEmpty() ? txtOperator : txtPassword)->setFocus();
        ShowProblem(operatorId.isEmpty() ? tr("Enter the operator id.") : tr("Enter the password."));
        return;
    }
    m_busy = true;
    QString password = txtPassword->text();
    const QString problem = m_attempts.TrySignOn(*choice, operatorId, password);
    // Where nobody was there to look at it, it need not be typed again.
    if (problem.isEmpty() || m_attempts.LastGreeting().problem.isEmpty())
        WipeEdit(*txtPassword);
    m_busy = false;
    if (problem.isEmpty()) {
        QDialog::accept();
        return;
    }
    m_greeted = choice;
    ShowGreeting(m_attempts.LastGreeting());
    txtPassword->setFocus();
    ShowProblem(problem);
}

void SignOnDialog::reject() {
    if (!m_busy)
        QDialog::reject();
}

void SignOnDialog::AcceptCertificate() {
    if (m_busy || !m_attempts.AcceptCertificate())
        return;
    m_greeted.reset();
    GreetServer();
}

} // namespace sysadmin

#include "moc_SignOnDialog.cpp"
