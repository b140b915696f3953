#include "system/IpAddressBoxes.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStackedLayout>
#include <QValidator>

namespace sysadmin {

namespace {

int DigitsIn(IpFamily family) {
    return family == IpFamily::V4 ? 3 : 4;
}

/// A box takes digits only, except for a whole address, which is then spread over all boxes.
class BoxValidator : public QValidator {
public:
    BoxValidator(IpFamily family, QObject* parent)
        : QValidator(parent)
        , m_family(family) {}

    State validate(QString& text, int&) const override {
        if (text.isEmpty())
            return Intermediate;
        const bool isDecimal = m_family == IpFamily::V4;
        bool isNumber = text.size() <= DigitsIn(m_family);
        for (const QChar c : text)
            isNumber = isNumber && c.unicode() < 128 && (isDecimal ? c.isDigit() : isxdigit(c.toLatin1()));
        return isNumber || ParseIp(text) ? Acceptable : Invalid;
    }

private:
    IpFamily m_family;
};

} // namespace

IpAddressBoxes::IpAddressBoxes(int end, const QString& caption, QWidget* parent)
    : QWidget(parent) {
    m_rows = new QStackedLayout(this);
    m_boxes4 = MakeBoxes(IpFamily::V4, end, caption);
    m_boxes6 = MakeBoxes(IpFamily::V6, end, caption);
    setFocusProxy(m_boxes4.first());
}

QList<QLineEdit*> IpAddressBoxes::MakeBoxes(IpFamily family, int end, const QString& caption) {
    const bool isV4 = family == IpFamily::V4;
    const int count = IpGroupCount(family);
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins({});
    line->setSpacing(4);
    QList<QLineEdit*> boxes;
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            line->addWidget(new QLabel(isV4 ? "." : ":", row));
        auto* box = new QLineEdit(row);
        box->setObjectName(QString(isV4 ? "txtIP4_%1" : "txtIP6_%1").arg(end * count + i));
        box->setAccessibleName(tr("%1, part %2 of %3").arg(caption).arg(i + 1).arg(count));
        box->setValidator(new BoxValidator(family, box));
        box->setAlignment(Qt::AlignCenter);
        box->setFixedWidth(box->fontMetrics().horizontalAdvance(isV4 ? "0000" : "ffff0") + 22);
        box->installEventFilter(this);
        connect(box, &QLineEdit::textEdited, this, [this, box] { OnEdited(box); });
        line->addWidget(box);
        boxes.append(box);
    }
    line->addStretch();
    m_rows->addWidget(row);
    return boxes;
}

void IpAddressBoxes::SetFamily(IpFamily family) {
    m_family = family;
    m_rows->setCurrentIndex(family == IpFamily::V4 ? 0 : 1);
    setFocusProxy(Shown().first());
}

void IpAddressBoxes::SetAddress(const QString& canonical) {
    SetAddress(canonical, FamilyOfIp(canonical));
}

void IpAddressBoxes::SetAddress(const QString& canonical, IpFamily family) {
    SetFamily(family);
    const QStringList groups = IpGroups(canonical, family);
    for (qsizetype i = 0; i < Shown().size(); ++i)
        Shown()[i]->setText(groups.value(i));
}

std::optional<QString> IpAddressBoxes::Address() const {
    QStringList groups;
    for (const QLineEdit* box : Shown())
        groups.append(box->text());
    return CanonicalIp(m_family, groups);
}

void IpAddressBoxes::FocusProblem() {
    QLineEdit* first = Shown().first();
    for (QLineEdit* box : Shown())
        if (!IsIpGroup(m_family, box->text())) {
            first = box;
            break;
        }
    first->setFocus();
    first->selectAll();
}

void IpAddressBoxes::OnEdited(QLineEdit* box) {
    const QString text = box->text();
    if (text.size() > DigitsIn(m_family) || text.contains(':')) {
        const std::optional<QString> whole = ParseIp(text);
        if (!whole)
            return;
        box->clear(); // a pasted address may belong into the boxes of the other family
        const IpFamily before = m_family;
        SetAddress(*whole);
        Shown().last()->setFocus();
        if (m_family != before)
            emit FamilyChanged(m_family);
        return;
    }
    if (text.size() == DigitsIn(m_family) && box->cursorPosition() == text.size())
        MoveFrom(box, 1);
}

void IpAddressBoxes::MoveFrom(QObject* box, int step) {
    const qsizetype next = Shown().indexOf(static_cast<QLineEdit*>(box)) + step;
    if (next < 0 || next >= Shown().size())
        return;
    Shown()[next]->setFocus();
    Shown()[next]->selectAll();
}

bool IpAddressBoxes::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const auto* box = static_cast<QLineEdit*>(watched);
        const QString separator = m_family == IpFamily::V4 ? "." : ":";
        if (key->text() == separator) {
            if (!box->text().isEmpty())
                MoveFrom(watched, 1);
            return true;
        }
        if (key->key() == Qt::Key_Backspace && box->text().isEmpty()) {
            MoveFrom(watched, -1);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace sysadmin

#include "moc_IpAddressBoxes.cpp"
