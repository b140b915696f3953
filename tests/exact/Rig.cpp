#include "exact/Rig.h"

#include "acquisitions/AcquisitionsScreens.h"
#include "cataloging/CatalogingScreens.h"
#include "circulation/CirculationScreens.h"
#include "core/data/StatusTable.h"
#include "requests/RequestsScreens.h"
#include "search/SearchScreens.h"
#include "security/SecurityScreens.h"
#include "security/frmSecurity_PasswordExpiration.h"
#include "system/SystemScreens.h"

#include <QDialog>
#include <QLabel>

namespace sysadmin::exact {

QString Line(const QString& name, const wire::Fields& fields) {
    QString line = name;
    for (const wire::Field& field : fields)
        line += " " + field.tag + "=" + field.value;
    return line;
}

RequestChannel::Answer AnsweringChannel::Exchange(const QString& name, const wire::Fields& fields) {
    m_sent.append(Line(name, fields));
    Reply reply{6, {}};
    if (QList<Reply>& queue = m_once[name]; !queue.isEmpty())
        reply = queue.takeFirst();
    else if (m_always.contains(name))
        reply = m_always[name];
    return {reply.status, reply.fields};
}

QString Report(qint16 status, const QString& operation, const QString& screenName) {
    const StatusText text = TextOfStatus(status);
    return text.serious ? QString("error %1 %2|%3|%4").arg(status).arg(text.message, operation, screenName)
                        : Told(text.message);
}

QString Told(const QString& text, const QString& title) {
    return title + "|" + text;
}

bool NotingPrompter::ShowBox(QWidget*, const Box& box) {
    m_told.append(Told(box.text, box.title));
    return box.buttons == Box::Buttons::Ok || answer;
}

bool NotingPrompter::RunDialog(QDialog& dialog) {
    const auto text = [&dialog](const char* label) {
        const auto* found = dialog.findChild<QLabel*>(label);
        return found ? found->text() : QString();
    };
    m_told.append(dialog.objectName() == u"frmError"
                      ? QString("error %1 %2|%3|%4")
                            .arg(text("lblReturnCodeText"), text("lblErrorMessage"), text("lblModuleText"),
                                 text("lblFormNameText"))
                      : "dialog " + dialog.objectName());
    return false;
}

void AddAllScreens(ScreenCatalogue& catalogue) {
    AddAcquisitionsScreens(catalogue);
    AddCatalogingScreens(catalogue);
    AddCirculationScreens(catalogue);
    AddRequestsScreens(catalogue);
    AddSearchScreens(catalogue);
    AddSecurityScreens(catalogue);
    AddSystemScreens(catalogue);
}

Rig::Rig(const Screen& rows, bool mayEdit)
    : m_rows(rows) {
    wire::Fields rights;
    for (const auto& [area, tag] :
         std::initializer_list<std::pair<const char*, QString>>{{"Acquisitions", "ASPG"},
                                                                {"Cataloging", "CatPG"},
                                                                {"Circulation", "CrcPG"},
                                                                {"CirculationConversion", "CrCnv"},
                                                                {"Security", "Sec"},
                                                                {"System", "SysDf"}})
        rights += {{tag, (rows.area == area) == mayEdit ? "Y" : "N"}, {tag + "V", "Y"}};
    rights += {{"ChgPwd", "Y"}, {"Dec", "2"}, {"PRB", "Y"}};
    channel.Always("SAInit", {0, rights});
    channel.Always(
        "CheckMasterProfile",
        {0, {{"EditPatGrp", (rows.area == u"PatronGroups") == mayEdit ? "Y" : "N"}, {"PatGrpV", "Y"}}});
    app.profile.Load(channel, "TESTER");
    channel.TakeSent();
    AddAllScreens(app.catalogue);
    QObject::connect(&app.notices, &Notices::SubjectChanged,
                     [this](const QString& subject) { notices.append(subject); });
}

Rig::~Rig() = default;

sysadmin::Screen& Rig::Open(const std::function<void(ScreenDeclaration&)>& alter) {
    app.alterDeclaration = alter;
    const ScreenEntry* entry = app.catalogue.Find(m_rows.key);
    if (m_rows.name == u"frmSecurity_PasswordExpiration") // stands in a dialog
        screen = std::make_unique<frmSecurity_PasswordExpiration>(app, nullptr);
    else if (!entry || !entry->screen.make)
        throw std::runtime_error("no screen " + m_rows.key.toStdString());
    else
        screen.reset(entry->screen.make(app, nullptr));
    screen->LoadScreen();
    return *screen;
}

} // namespace sysadmin::exact
