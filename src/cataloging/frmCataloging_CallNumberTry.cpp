#include "cataloging/frmCataloging_CallNumberTry.h"

#include "cataloging/RecordEntry.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int CallNumberTryTopic = 50457;

const char* const ClassedRecord = "LDR    00000cam a2200000 i 4500\n"
                                  "001    100001\n"
                                  "050  4 $a QL696.S83 $b M37 2025\n"
                                  "082 04 $a 598.9/7 $2 23\n"
                                  "100 1  $a Marlowe, Ines, $e author.\n"
                                  "245 14 $a The owls of the northern marshes / $c Ines Marlowe.\n";

QString InWords(LookedPlace::Outcome outcome) {
    switch (outcome) {
    case LookedPlace::Outcome::Taken:
        return frmCataloging_CallNumberTry::tr("Taken");
    case LookedPlace::Outcome::Behind:
        return frmCataloging_CallNumberTry::tr("Not needed");
    default:
        return frmCataloging_CallNumberTry::tr("Nothing");
    }
}

} // namespace

frmCataloging_CallNumberTry::frmCataloging_CallNumberTry(const CallNumberHierarchy& hierarchy,
                                                         Prompter& prompter, QWidget* parent)
    : QDialog(parent)
    , m_hierarchy(hierarchy) {
    setObjectName("frmCataloging_CallNumberTry");
    setWindowTitle(hierarchy.name.isEmpty() ? tr("Try the Call Number Hierarchy")
                                            : tr("Try %1").arg(hierarchy.name));
    setProperty(HelpContextProperty, CallNumberTryTopic);
    auto* whole = new QVBoxLayout(this);
    m_record = new RecordEntry(prompter, this);
    whole->addWidget(m_record, 2);
    lblVerdict = new QLabel(this);
    lblVerdict->setObjectName("lblVerdict");
    lblVerdict->setTextFormat(Qt::PlainText);
    lblVerdict->setWordWrap(true);
    lblVerdict->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont bold = lblVerdict->font();
    bold.setBold(true);
    lblVerdict->setFont(bold);
    whole->addWidget(lblVerdict);
    vsfPlaces = new ListGrid("vsfTriedPlaces",
                             {{.caption = tr("No."), .width = 46},
                              {.caption = tr("Place"), .width = 130},
                              {.caption = tr("Call Number Type"), .width = 250},
                              {.caption = tr("Result"), .width = 90},
                              {.caption = tr("Call Number"), .width = 160},
                              {.caption = tr("Why")}},
                             this);
    vsfPlaces->setAccessibleName(tr("Places"));
    vsfPlaces->SetSortable(false);
    vsfPlaces->SetPrompter(prompter);
    whole->addWidget(vsfPlaces, 3);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_record, &RecordEntry::RecordChanged, this, &frmCataloging_CallNumberTry::Show);
    resize(980, 620);
    m_record->SetText(QString::fromUtf8(ClassedRecord));
    m_record->setFocus();
}

void frmCataloging_CallNumberTry::Show() {
    if (!m_record->HasRecord()) {
        vsfPlaces->SetRows({});
        lblVerdict->setText(tr("There is no record."));
        return;
    }
    const CallNumberSearch search = SearchCallNumber(m_record->Record(), m_hierarchy);
    QList<GridRow> rows;
    for (qsizetype i = 0; i < search.places.size(); ++i) {
        const LookedPlace& looked = search.places[i];
        const CallNumberPlace& place = m_hierarchy.places[i];
        rows.append({QString::number(i),
                     {QString::number(i + 1), place.Name(), CallNumberTypeName(place.type),
                      InWords(looked.outcome), looked.CallNumber(), looked.why},
                     {}});
    }
    vsfPlaces->SetRows(rows);
    if (search.taken >= 0)
        vsfPlaces->SelectKey(QString::number(search.taken));
    lblVerdict->setText(search.taken >= 0
                            ? tr("A new holdings record has %1").arg(HoldingsField(search, m_hierarchy)) +
                                  (search.doubt.isEmpty() ? QString() : '\n' + search.doubt)
                        : m_hierarchy.places.isEmpty()
                            ? tr("The hierarchy has no places: a new holdings record has no call number.")
                            : tr("None of the places holds a call number: a new holdings record has none."));
}

} // namespace sysadmin

#include "moc_frmCataloging_CallNumberTry.cpp"
