#include "cataloging/frmCataloging_MARCFieldSort.h"

#include "core/Prompter.h"
#include "marc/Record.h"
#include "wire/FieldOrder.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int FieldSortTopic = 50452;
const QString IndicatorCharacters = R"([\x21-\x29\x2b-\x7e])"; ///< all but the blank and "*", which is "any"

} // namespace

frmCataloging_MARCFieldSort::frmCataloging_MARCFieldSort(QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmCataloging_MARCFieldSort");
    setWindowTitle(tr("MARC Field Sort Option Parameter"));
    setProperty(HelpContextProperty, FieldSortTopic);
    lblParameter = new QLabel(this);
    lblParameter->setObjectName("lblParameter");
    txtParameter = new QLineEdit(this);
    txtParameter->setObjectName("txtParameter");
    lblParameter->setBuddy(txtParameter);
    auto* buttons = new QDialogButtonBox(this);
    cmdSave = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
    cmdSave->setObjectName("cmdSave");
    cmdSave->setDefault(true);
    buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblParameter);
    whole->addWidget(txtParameter);
    whole->addStretch();
    whole->addWidget(buttons);
    setMinimumWidth(360);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(txtParameter, &QLineEdit::textChanged, this, &frmCataloging_MARCFieldSort::TakeText);
    TakeText({});
}

void frmCataloging_MARCFieldSort::Initialize(const OrderingRule& rule, const QString& shownParameter) {
    lblParameter->setText(rule.parameterLabel + ":");
    QString characters;
    m_least = 1;
    if (rule.IsSpecificField()) {
        txtParameter->setMaxLength(marc::TagLength);
        characters = "[0-9]*";
        m_least = marc::TagLength;
    } else if (rule.IsIndicator1() || rule.IsIndicator2()) {
        txtParameter->setMaxLength(1);
        txtParameter->setToolTip(tr("# stands for a blank indicator"));
        characters = IndicatorCharacters;
    } else if (rule.parameterType.endsWith('C')) {
        txtParameter->setMaxLength(rule.parameterType.chopped(1).toInt());
    }
    if (!characters.isEmpty())
        txtParameter->setValidator(
            new QRegularExpressionValidator(QRegularExpression(characters), txtParameter));
    txtParameter->setText(shownParameter);
    txtParameter->selectAll();
    TakeText(txtParameter->text());
}

void frmCataloging_MARCFieldSort::TakeText(const QString& text) {
    m_value = text.trimmed();
    cmdSave->setEnabled(m_value.size() >= m_least);
}

} // namespace sysadmin

#include "moc_frmCataloging_MARCFieldSort.cpp"
