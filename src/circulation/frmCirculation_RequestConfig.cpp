#include "circulation/frmCirculation_RequestConfig.h"

#include "core/Application.h"
#include "framework/ClusterSelection.h"

namespace sysadmin {

namespace {

struct Switch {
    const char* tag;
    const char* caption;
};

// clang-format off
constexpr Switch Switches[] = {
    {"OTH", QT_TRANSLATE_NOOP("RequestConfig", "&OPAC: Title Level Hold")},
    {"OCH", QT_TRANSLATE_NOOP("RequestConfig", "OP&AC: Copy Level Hold")},
    {"OTR", QT_TRANSLATE_NOOP("RequestConfig", "O&PAC: Title Level Recall")},
    {"OCR", QT_TRANSLATE_NOOP("RequestConfig", "OPAC: Copy &Level Recall")},
    {"CTH", QT_TRANSLATE_NOOP("RequestConfig", "C&IRC: Title Level Hold")},
    {"CCH", QT_TRANSLATE_NOOP("RequestConfig", "CIRC: Copy L&evel Hold")},
    {"CTR", QT_TRANSLATE_NOOP("RequestConfig", "CIRC: &Title Level Recall")},
    {"CCR", QT_TRANSLATE_NOOP("RequestConfig", "CIRC: Copy Le&vel Recall")},
    {"WTH", QT_TRANSLATE_NOOP("RequestConfig", "&Web Services: Title Level Hold")},
    {"WCH", QT_TRANSLATE_NOOP("RequestConfig", "Web Services: Copy Level Hol&d")},
    {"WTR", QT_TRANSLATE_NOOP("RequestConfig", "We&b Services: Title Level Recall")},
    {"WCR", QT_TRANSLATE_NOOP("RequestConfig", "Web Services: Copy Level &Recall")},
};
// clang-format on

QList<FieldDeclaration> Fields() {
    QList<FieldDeclaration> fields;
    for (const Switch& one : Switches)
        fields.append(
            Declare<FlagField>({.name = QString("chk") + one.tag,
                                .tag = one.tag,
                                .caption = QCoreApplication::translate("RequestConfig", one.caption)}));
    return fields;
}

} // namespace

frmCirculation_RequestConfig::frmCirculation_RequestConfig(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmCirculation_RequestConfig", tr("Circulation Request Configs"),
                         Area::Circulation, parent) {
    auto& form = KeepForm<DeclaredForm>(Fields());
    QList<PutStep> puts{{[this](RequestChannel&, const SaveContext&) { PutKey(); }, "CID"}};
    for (const Field* field : form.Fields())
        puts.append(PutValue(*field));
    Build({.subject = tr("Circulation Request Configs"),
           .notice = "RequestCfg",
           .frameNoun = tr("Circulation Request Configs"),
           .getRequest = "GetRequestCfg",
           .updateRequest = "UpdRequestCfg",
           .loadCaption = "Load Circulation Request Configs - GetRequestCfg",
           .saveCaption = "Load Circulation Request Configs - GetRequestCfg"},
          form,
          Flow(3, {Frame("fraOPAC", tr("OPAC"), {"chkOTH", "chkOCH", "chkOTR", "chkOCR"}),
                   Frame("fraCIRC", tr("Circulation"), {"chkCTH", "chkCCH", "chkCTR", "chkCCR"}),
                   Frame("fraWebServices", tr("Web Services"), {"chkWTH", "chkWCH", "chkWTR", "chkWCR"})}),
          puts);
}

// The operator was asked before about an open edit.
void frmCirculation_RequestConfig::OnClusterChanged() {
    LoadScreen();
}

bool frmCirculation_RequestConfig::BeforeLoad() {
    return App().clusters.Current() || GetClusterList(App(), this);
}

void frmCirculation_RequestConfig::PutKey() {
    App().channel.PutField("CID", App().clusters.Current()->sClusterID);
}

} // namespace sysadmin

#include "moc_frmCirculation_RequestConfig.cpp"
