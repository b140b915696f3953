#include "requests/RequestFormPreview.h"

#include "requests/RequestFormForm.h"

#include <QEvent>
#include <QTextDocument>
#include <QTimer>

namespace sysadmin {

namespace {

/// A field as the patron meets it.
struct PatronField {
    QString label;
    bool isRequired = false;
    bool canEdit = true;
};

QList<PatronField> FieldsForPatrons(const RequestFormForm& form) {
    QList<PatronField> fields;
    const bool exchanged = form.IsExchanged();
    for (const GridRow& row : form.FormFields().Rows()) {
        const QString change = exchanged ? row.cells.value(MappedColumn::Change) : PatronMay::Edit;
        if (change == PatronMay::NotSee)
            continue;
        fields.append({row.cells.value(exchanged ? MappedColumn::Label : SimpleColumn::Label),
                       row.cells.value(exchanged ? MappedColumn::Required : SimpleColumn::Required) == u"Y",
                       change == PatronMay::Edit});
    }
    return fields;
}

QString Paragraph(const QString& text, const QString& style = {}) {
    return "<p style=\"" + style + "\">" + text.toHtmlEscaped().replace('\n', "<br>") + "</p>";
}

} // namespace

RequestFormPreview::RequestFormPreview(const RequestFormForm& form, QWidget* parent)
    : QTextBrowser(parent)
    , m_form(form)
    , m_later(new QTimer(this)) {
    setObjectName("picPreview");
    setAccessibleName(tr("Preview of the form"));
    setOpenLinks(false);
    document()->setDocumentMargin(16);
    // A record is loaded field by field, and drawn once; what nobody sees is not drawn.
    m_later->setSingleShot(true);
    m_later->setInterval(0);
    connect(m_later, &QTimer::timeout, this, &RequestFormPreview::Draw);
    connect(&form, &Form::Changed, this, [this] {
        if (isVisible())
            m_later->start();
    });
}

void RequestFormPreview::showEvent(QShowEvent* event) {
    QTextBrowser::showEvent(event);
    Draw();
}

void RequestFormPreview::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_later)
        m_later->start();
}

void RequestFormPreview::Draw() {
    const QString text = palette().color(QPalette::Text).name();
    const QString fill = palette().color(QPalette::AlternateBase).name();
    const QString line = palette().color(QPalette::Mid).name();
    const QString quiet = "color:" + text + "; font-style:italic";

    const QString box = "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"4\" style=\"border-collapse:"
                        "collapse\"><tr><td style=\"background-color:" +
                        fill + "; border:1px solid " + line + "\">&nbsp;</td></tr></table>";
    QString page;
    if (m_form.chkSuppress.IsOn())
        page += Paragraph(tr("Suppressed: patrons do not get to see this form."), quiet);
    const QString name = m_form.txtFormName.Draft().trimmed();
    page += "<h2>" + (name.isEmpty() ? tr("(no name yet)") : name).toHtmlEscaped() + "</h2>";
    if (!m_form.txtInstructions.IsBlank())
        page += Paragraph(m_form.txtInstructions.Draft());
    const QString type = m_form.cboFormType.Draft();
    if (type == requestforms::ItemLevel || requestforms::IsUniversalBorrowing(type))
        page += Paragraph(tr("Here stands the title that the patron has chosen."), quiet);

    const QList<PatronField> fields = FieldsForPatrons(m_form);
    bool anyRequired = false;
    page += "<table cellspacing=\"0\" cellpadding=\"5\" width=\"100%\">";
    for (const PatronField& field : fields) {
        anyRequired = anyRequired || field.isRequired;
        page += "<tr><td width=\"35%\" align=\"right\" valign=\"middle\">" + field.label.toHtmlEscaped() +
                (field.isRequired ? " <b>*</b>" : "") + "</td><td valign=\"middle\">";
        page += field.canEdit ? box
                              : "<span style=\"" + quiet + "\">" +
                                    tr("filled in, cannot be changed").toHtmlEscaped() + "</span>";
        page += "</td></tr>";
    }
    page += "</table>";
    if (fields.isEmpty())
        page += Paragraph(tr("There is nothing to fill in."), quiet);
    if (anyRequired)
        page += Paragraph(tr("* must be filled in"));
    if (m_form.optOutput.IsUsable() && m_form.optOutput.Draft() == u"E" && m_form.txtEmail.IsBlank() &&
        !m_form.IsExchanged())
        page += Paragraph(tr("Requests are to be sent by e-mail, and there is no address yet."), quiet);
    setHtml("<body style=\"color:" + text + "\">" + page + "</body>");
}

} // namespace sysadmin

#include "moc_RequestFormPreview.cpp"
