#include "framework/ImportFile.h"

#include "core/data/Tr.h"
#include "framework/Captions.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSet>
#include <QStringDecoder>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

/// What is the same of a heading and a caption.
QString Folded(const QString& name) {
    QString folded = name.simplified().toCaseFolded();
    folded.remove('&');
    while (folded.endsWith(':') || folded.endsWith(' '))
        folded.chop(1);
    return folded;
}

QChar SeparatorOf(const QString& text) {
    QChar best = u',';
    qsizetype most = 0;
    for (const QChar separator : {u',', u';', u'\t'}) {
        // The headings may be quoted and hold line breaks: so much of the text as has them.
        constexpr qsizetype Sample = 65536;
        const QList<wire::CsvRecord> sample = wire::ParseCsv(text.left(Sample), nullptr, separator);
        const qsizetype columns = sample.isEmpty() ? 0 : sample.first().fields.size();
        if (columns > most) {
            most = columns;
            best = separator;
        }
    }
    return best;
}

} // namespace

ImportFile ReadImportFile(const QByteArray& bytes) {
    QStringDecoder decode(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8));
    const QString text = decode(bytes);
    if (decode.hasError())
        return {.problem = Tr("The file is not text in UTF-8.")};
    ImportFile file;
    int openLine = 0;
    const QList<wire::CsvRecord> records = wire::ParseCsv(text, &openLine, SeparatorOf(text));
    if (openLine > 0)
        return {.problem = Tr("Line %1: a quotation mark is opened and not closed.").arg(openLine)};
    for (const wire::CsvRecord& record : records) {
        const bool isEmpty = std::all_of(record.fields.begin(), record.fields.end(),
                                         [](const QString& field) { return field.trimmed().isEmpty(); });
        if (isEmpty)
            continue;
        if (file.headings.isEmpty())
            file.headings = record.fields;
        else
            file.records.append(record);
    }
    if (file.records.isEmpty())
        file.problem = Tr("The file has no lines below its headings.");
    return file;
}

QList<int> MatchColumns(const QStringList& headings, const QList<ImportTarget>& targets) {
    QList<int> columns;
    for (const QString& heading : headings) {
        int found = -1;
        for (int i = 0; i < targets.size() && found < 0; ++i)
            for (const QString& name : targets[i].names)
                if (!heading.trimmed().isEmpty() && Folded(name) == Folded(heading) && !columns.contains(i))
                    found = i;
        columns.append(found);
    }
    return columns;
}

frmImportColumns::frmImportColumns(Prompter& prompter, const ImportPlan& plan, const QString& fileName,
                                   int helpContext, std::function<bool(const ImportPlan&)> preview,
                                   QWidget* parent)
    : QDialog(parent)
    , m_prompter(prompter)
    , m_plan(plan)
    , m_preview(std::move(preview)) {
    setObjectName("frmImportColumns");
    setProperty(HelpContextProperty, helpContext);
    setWindowTitle(Tr("Import %1").arg(QFileInfo(fileName).fileName()));
    const auto& lines = plan.file.records;
    auto* lblNote = new QLabel((lines.size() == 1 ? Tr("The file has 1 record.")
                                                  : Tr("The file has %L1 records.").arg(lines.size())) +
                                   ' ' + Tr("Its columns go to these fields:"),
                               this);
    lblNote->setObjectName("lblNote");
    lblNote->setWordWrap(true);
    auto* columns = new QWidget(this);
    auto* grid = new QGridLayout(columns);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(16);
    const auto plainLabel = [columns](const QString& text) {
        constexpr int Widest = 220;
        auto* label = new QLabel(columns);
        label->setTextFormat(Qt::PlainText);
        label->setText(label->fontMetrics().elidedText(text.simplified(), Qt::ElideRight, Widest));
        label->setToolTip(text.toHtmlEscaped());
        return label;
    };
    for (int i = 0; i < plan.file.headings.size(); ++i) {
        auto* box = new QComboBox(columns);
        box->setObjectName("cboColumn_" + QString::number(i));
        box->setAccessibleName(plan.file.headings[i]);
        box->addItem(Tr("(not imported)"), -1);
        for (int place = 0; place < plan.targets.size(); ++place)
            box->addItem(plan.targets[place].caption, place);
        box->setCurrentIndex(box->findData(plan.columns.value(i, -1)));
        // Long captions leave room for the sample.
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(24);
        QLabel* heading = plainLabel(plan.file.headings[i]);
        heading->setBuddy(box);
        grid->addWidget(heading, i, 0);
        grid->addWidget(box, i, 1);
        QLabel* sample = plainLabel(lines.isEmpty() ? QString() : lines.first().fields.value(i));
        sample->setForegroundRole(QPalette::PlaceholderText);
        grid->addWidget(sample, i, 2);
        m_boxes.append(box);
        connect(box, &QComboBox::currentIndexChanged, this, &frmImportColumns::OfferKeys);
    }
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(int(plan.file.headings.size()), 1);
    auto* area = new QScrollArea(this);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    area->setWidget(columns);
    columns->setAutoFillBackground(false);

    cboKey = new QComboBox(this);
    cboKey->setObjectName("cboKey");
    auto* lblKey = new QLabel(Tr("&Records are known by:"), this);
    lblKey->setObjectName("lblKey");
    lblKey->setBuddy(cboKey);
    auto* lblKeyNote = new QLabel(Tr("A record that the list has is changed; any other one is added."), this);
    lblKeyNote->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* cmdPreview = buttons->addButton(Tr("&Preview..."), QDialogButtonBox::AcceptRole);
    cmdPreview->setObjectName("cmdPreview");
    cmdPreview->setDefault(true);
    buttons->addButton(Tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblNote);
    whole->addWidget(area, 1);
    auto* key = new QHBoxLayout;
    key->addWidget(lblKey);
    key->addWidget(cboKey);
    key->addStretch(1);
    whole->addLayout(key);
    whole->addWidget(lblKeyNote);
    whole->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmImportColumns::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmImportColumns::reject);
    OfferKeys();
    AssignMnemonics(*this);
    constexpr int MostHeight = 620;
    resize(qMax(620, sizeHint().width()), qMin(MostHeight, columns->sizeHint().height() + 190));
}

// What a column says and the list shows; the one that was chosen stays.
void frmImportColumns::OfferKeys() {
    const int chosen = cboKey->count() > 0 ? cboKey->currentData().toInt() : m_plan.key;
    cboKey->clear();
    for (int i = 0; i < m_plan.targets.size(); ++i) {
        const bool isThere = std::any_of(m_boxes.begin(), m_boxes.end(),
                                         [i](const QComboBox* box) { return box->currentData() == i; });
        if (isThere && m_plan.targets[i].listColumn >= 0)
            cboKey->addItem(m_plan.targets[i].caption, i);
    }
    cboKey->setCurrentIndex(qMax(cboKey->count() > 0 ? 0 : -1, cboKey->findData(chosen)));
}

void frmImportColumns::accept() {
    QList<int> columns;
    QSet<int> taken;
    for (const QComboBox* box : m_boxes) {
        const int place = box->currentData().toInt();
        if (place >= 0 && taken.contains(place)) {
            m_prompter.ShowBox(this,
                               {.text = Tr("Two columns go to \"%1\".").arg(m_plan.targets[place].caption)});
            return;
        }
        taken.insert(place);
        columns.append(place);
    }
    if (cboKey->currentIndex() < 0) {
        m_prompter.ShowBox(this, {.text = Tr("No column says which record a line is about: code or name.")});
        return;
    }
    m_plan.columns = columns;
    m_plan.key = cboKey->currentData().toInt();
    if (m_preview(m_plan))
        QDialog::accept();
}

} // namespace sysadmin

#include "moc_ImportFile.cpp"
