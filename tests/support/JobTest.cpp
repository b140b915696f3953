#include "support/JobTest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>

namespace sysadmin {

JobTest::JobTest() {
    m_trace = m_folder.filePath("trace.jsonl");
    arguments += {"--trace", m_trace};
}

void JobTest::TearDown() {
    QFile trace(m_trace);
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    const QByteArray text = trace.readAll();
    EXPECT_FALSE(text.isEmpty());
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
