#include "app/JobTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>

namespace sysadmin {

namespace {

const QString Postal = "EMl Adr1 Adr2 Adr3 Adr4 Adr5 City St Zip Cty SAN";
const QString Desks = "( CPGID CLOCID COPCDF)*";
const QString Members = "(( DN)*|( IP)*|( MI XI)*|( SI)*)";
const QString Account = "OI FNm LNm MI MdDt MdOpr Srt";
const QString Rights = "Sec SecV ChgPwd SysDf SysDfV ASPG ASPGV CatPG CatPGV CrcPG CrcPGV CrCnv CrCnvV MSPG "
                       "CluCreate CluDelete CluEdit CluViewOnly EditPatGrp PatGrpV";
const QString Moved = "(SOI OSt )*(3 LSt )*";

/// The tags of each request, in order, as a pattern. A request that is not listed here does not belong to
/// these jobs.
const QHash<QString, QString>& TagPatterns() {
    static const QHash<QString, QString> patterns{
        // sign-on and start-up
        {"Hello", ""},
        {"SignOn", "OI PW"},
        {"SignOff", ""},
        {"ChgOwnPwd", "OPW PW"},
        {"SAInit", "OI"},
        {"CheckMasterProfile", "OI"},
        // locations, addresses and clusters
        {"LstLib", ""},
        {"LstVenTp", ""},
        {"AddVenTp", "Cd Nm"},
        {"UpdVenTp", "Cd Nm.*"},
        {"GetBsCur", ""},
        {"LstLoc", "(55)?"},
        {"GetLoc", "ID"},
        {"AddLoc", "Cd Nm Spn Dsp OPAC Lb"},
        {"UpdLoc", "Cd Nm Spn Dsp OPAC Lb ID NCd NNm|AdrRq AdrID AdrNm " + Postal +
                       " Ship Bill Strt Cmp CDsk Other( PhNm PhTp PhRq PhAID)* Cd Nm Spn Dsp OPAC Lb ID NCd"},
        {"DelLoc", "ID"},
        {"GetDAdr", ""},
        {"AddDAdr", "LNm CCm " + Postal},
        {"UpdDAdr", "LNm CCm " + Postal},
        {"GetClusterSecurity", "SOI"},
        {"GetClusterList", "OI( 55)?"},
        {"GetCluster", "CID"},
        {"AddCluster", "CCD CNM" + Desks + " CPLID BLT"},
        {"UpdCluster", "CID CCD CNM" + Desks + " CPLID BLT"},
        {"DelCluster", "CID"},
        {"GetWSSelfReg", "CID"},
        // access control groups
        {"LstAG", ""},
        {"AvlAG", ""},
        {"GetAG", "I"},
        {"AddAG", "T C N" + Members},
        {"UpdAG", "T I C N" + Members + " NCd NNm"},
        // operators
        {"LstOpr", "Srt( 55)?"},
        {"GetOpr", "OI"},
        {"AddOpr", Account + " PW SPV Nexp Rchg CrDt Exp"},
        {"UpdOpr", Account + "( PW)? SPV Nexp Rchg CrDt Exp PID"},
        {"DelOpr", "OI"},
        {"ExpOpr", "OI MdOpr"},
        {"PwdUsg", "OI PW SPV AS"},
        {"GET_PWD_DISPLAY_TEXT", ""},
        {"GetLockoutStatus", "OI"},
        {"ClearLockoutStatus", "OI"},
        // profiles
        {"LstMPrf", ""},
        {"AvlMPrf", "(55)?"},
        {"GetMPrf", "ID"},
        {"AddMPrf", Moved + Rights + " Nm"},
        {"UpdMPrf", Moved + Rights + " Nm ID NNm"},
        {"DelMPrf", "ID"},
        // security options
        {"GetSecOptions", ""},
        {"UpdSecOptions", "PMC PAM PAX ERD PLM PLX PCI PCN PAL PAG PUL PUG PLL PLG PNL PNG PSL PSG PGR PSC "
                          "PDD LGA LKD LKR PDT SWT LAT"},
        {"GetInvalidLogins", "(55)?"},
        {"ClearInvalidLogins", ""},
        {"GetMscExpire", ""},
        {"UpdMscExpire", "ED"},
        // what else the new operator opens
        {"LstPatNoteTp", ""},
        {"AddPatNoteTp", "D"},
    };
    return patterns;
}

} // namespace

JobTest::JobTest() {
    m_trace = m_folder.filePath("trace.jsonl");
    arguments += {"--trace", m_trace};
}

void JobTest::TearDown() {
    const QList<Sent> traffic = Traffic();
    EXPECT_FALSE(traffic.isEmpty());
    for (const Sent& sent : traffic) {
        QStringList tags;
        for (const wire::Field& field : sent.fields)
            tags.append(field.tag);
        const auto pattern = TagPatterns().find(sent.name);
        if (pattern == TagPatterns().end()) {
            ADD_FAILURE() << "request of another job: " << sent.name.toStdString() << " with "
                          << tags.join(' ').toStdString();
            continue;
        }
        const QRegularExpression whole(QRegularExpression::anchoredPattern(*pattern));
        EXPECT_TRUE(whole.match(tags.join(' ')).hasMatch())
            << sent.name.toStdString() << " puts " << tags.join(' ').toStdString();
    }
    QFile trace(m_trace);
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    const QByteArray text = trace.readAll();
    for (const QString& secret : m_secrets)
        EXPECT_FALSE(text.contains(secret.toUtf8())) << secret.toStdString() << " is in the trace";
    ClientTest::TearDown();
}

QList<JobTest::Sent> JobTest::Traffic() const {
    QList<Sent> traffic;
    QFile trace(m_trace);
    EXPECT_TRUE(trace.open(QIODevice::ReadOnly));
    while (!trace.atEnd()) {
        const QJsonObject entry = QJsonDocument::fromJson(trace.readLine()).object();
        Sent sent{entry["request"].toString(), {}};
        for (const QJsonValue& field : entry["put"].toArray())
            sent.fields.append(wire::Field{field[0].toString(), field[1].toString()});
        traffic.append(sent);
    }
    return traffic;
}

JobTest::Sent JobTest::LastSent(const QString& request) const {
    Sent last;
    for (const Sent& sent : Traffic())
        if (sent.name == request)
            last = sent;
    EXPECT_EQ(last.name, request) << "was never sent";
    return last;
}

QString JobTest::Secret(const QString& text) {
    if (!m_secrets.contains(text))
        m_secrets.append(text);
    return text;
}

QStringList JobTest::Rows(QWidget& parent, const QString& grid) {
    const GridModel& model = Grid(parent, grid).Model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            if (!model.Columns()[column].hidden)
                cells.append(model.CellText(row, column));
        rows.append(cells.join('|'));
    }
    return rows;
}

void JobTest::Select(QWidget& parent, const QString& beginning, const QString& grid) {
    const QStringList rows = Rows(parent, grid);
    for (int row = 0; row < rows.size(); ++row)
        if (rows[row].startsWith(beginning)) {
            Grid(parent, grid).SelectKey(Grid(parent, grid).Model().RowAt(row).key);
            return;
        }
    throw std::runtime_error("no row " + beginning.toStdString());
}

void JobTest::Check(QWidget& parent, const QString& checkBox, bool on) {
    if (Get<QCheckBox>(parent, checkBox).isChecked() != on)
        Click(parent, checkBox);
}

void JobTest::Choose(QWidget& parent, const QString& comboBox, const QString& entry) {
    auto& box = Get<QComboBox>(parent, comboBox);
    ASSERT_TRUE(box.isEnabled()) << comboBox.toStdString() << " is disabled";
    const int index = box.findText(entry);
    ASSERT_GE(index, 0) << comboBox.toStdString() << " has no entry " << entry.toStdString();
    box.setCurrentIndex(index);
    emit box.activated(index);
}

QString JobTest::TextOf(QWidget& parent, const QString& lineEdit) {
    return Get<QLineEdit>(parent, lineEdit).text();
}

QString JobTest::FrameCaption(QWidget& screen) {
    return Get<QGroupBox>(screen, "fraEdit").title();
}

void JobTest::Write(QWidget& parent, const QString& textEdit, const QString& text) {
    auto& edit = Get<QPlainTextEdit>(parent, textEdit);
    ASSERT_TRUE(edit.isEnabled() && !edit.isReadOnly()) << textEdit.toStdString() << " takes no input";
    edit.selectAll();
    edit.insertPlainText(text);
}

server::Database& JobTest::Store() {
    if (!m_store)
        m_store = GetLibrary().Connect();
    return *m_store;
}

void JobTest::NextDay() {
    m_store.reset();
    ReopenLibrary();
    SignOn("SYSADMIN");
}

qint16 JobTest::Ask(const QString& request, const wire::Fields& fields) {
    for (const wire::Field& field : fields)
        App().channel.PutField(field.tag, field.value);
    return App().channel.SendRequest(request);
}

QStringList JobTest::Offered() {
    QStringList offered;
    for (const QMenu* group : Get<QMenu>(Window(), "mnuFunctions").findChildren<QMenu*>())
        for (const QAction* action : group->actions())
            offered.append(action->objectName().section('_', 1));
    return offered;
}

} // namespace sysadmin
