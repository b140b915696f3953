#include "framework/forms/ValueFields.h"

#include "core/data/RequestChannel.h"

#include <QLocale>
#include <QRegularExpression>

namespace sysadmin {

namespace {

/// A whole number without the zeros in front; other text as it is.
QString WithoutZeros(const QString& number) {
    bool isNumber = false;
    const int value = number.trimmed().toInt(&isNumber);
    return isNumber ? QString::number(value) : number;
}

} // namespace

void ValueField::SetDraft(const QString& value) {
    if (m_draft == value)
        return;
    m_draft = value;
    NotifyEdit();
}

void ValueField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void ValueField::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<QString>(draft);
    NotifyChange();
}

void ValueField::SetStored(const QString& value) {
    m_stored = value;
    m_draft = value;
    NotifyChange();
}

void ValueField::Load(RequestChannel& channel) {
    if (!Tag().isEmpty())
        SetStored(FromWire(channel.GetField(Tag())));
}

void ValueField::Put(RequestChannel& channel) const {
    channel.PutField(Tag(), ToWire());
}

QString ValueField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty())
        return problem;
    // A stored text may be longer than its field: it may stay.
    if (IsChanged() && Spec().maxLength > 0 && m_draft.size() > Spec().maxLength)
        return Form::tr("\"%1\" takes %2 characters at the most.").arg(PlainCaption()).arg(Spec().maxLength);
    return {};
}

void TextField::Tidy() {
    if (IsChanged())
        SetDraft(Draft().trimmed());
}

QString MultiLineField::FromWire(const QString& value) const {
    return QString(value).replace("\r\n", "\n");
}

QString MultiLineField::ToWire() const {
    return QString(Draft()).replace("\n", "\r\n");
}

void ChoiceField::SetItems(const QList<PickItem>& items) {
    if (Items() == items)
        return;
    m_items = items;
    NotifyChange();
}

QString ChoiceField::DisplayText() const {
    for (const PickItem& item : Items())
        if (item.id == Draft())
            return item.text;
    return Draft();
}

void NumberField::Tidy() {
    if (IsChanged())
        SetDraft(WithoutZeros(Draft()));
}

QString NumberField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty() || IsBlank())
        return problem;
    bool isNumber = false;
    const int value = Draft().toInt(&isNumber);
    if (!isNumber || value < Least() || value > Most())
        return Form::tr("\"%1\" must be a whole number from %2 to %3.")
            .arg(PlainCaption())
            .arg(Least())
            .arg(Most());
    return {};
}

void MoneyField::SetDecimals(int decimals) {
    if (m_decimals == decimals)
        return;
    m_decimals = decimals;
    NotifyChange();
}

QString MoneyField::Normalised(const QString& typed) const {
    const QString plain = QString(typed).remove(',').trimmed();
    bool isAmount = false;
    const double amount = plain.toDouble(&isAmount);
    return isAmount ? QString::number(amount, 'f', m_decimals) : plain;
}

void MoneyField::Tidy() {
    if (IsChanged())
        SetDraft(Normalised(Draft()));
}

QString MoneyField::FromWire(const QString& value) const {
    return value.trimmed().isEmpty() ? QString() : QString(value).remove(',').trimmed();
}

QString MoneyField::ToWire() const {
    return IsBlank() ? " " : QString(Draft()).remove(',');
}

QString MoneyField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty() || IsBlank())
        return problem;
    bool isAmount = false;
    const double amount = QString(Draft()).remove(',').toDouble(&isAmount);
    if (!isAmount || amount < 0)
        return Form::tr("\"%1\" must be an amount of money.").arg(PlainCaption());
    return {};
}

namespace {

/// Day, month and year by numbers: with any marks between them, or two digits each and all of the year.
QDate DateOfNumbers(const QString& typed) {
    static const QRegularExpression iso("^(\\d{4})-(\\d{1,2})-(\\d{1,2})$");
    if (const QRegularExpressionMatch match = iso.match(typed); match.hasMatch())
        return QDate(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    QString order; // of the parts in the locale's form
    for (const QChar letter : DateForm())
        if (QString("dMy").contains(letter) && !order.contains(letter))
            order.append(letter);
    QString marked = "^";
    QString together = "^";
    for (const QChar part : order) {
        marked +=
            QString(marked.size() > 1 ? "\\D+" : "") + (part == u'y' ? "(\\d{4}|\\d{2})" : "(\\d{1,2})");
        together += part == u'y' ? "(\\d{4}|\\d{2})" : "(\\d{2})";
    }
    for (const QString& pattern : {marked + "$", together + "$"}) {
        const QRegularExpressionMatch match = QRegularExpression(pattern).match(typed);
        if (!match.hasMatch())
            continue;
        const auto part = [&](QChar letter) {
            return match.captured(int(order.indexOf(letter)) + 1).toInt();
        };
        const int year = part('y');
        return QDate(year < 100 ? 2000 + year : year, part('M'), part('d'));
    }
    return {};
}

} // namespace

void DateField::TypeIn(const QString& text) {
    const QString typed = text.simplified();
    QDate date = QLocale().toDate(typed, DateForm());
    if (!date.isValid() || date.year() < 1000)
        date = DateOfNumbers(typed);
    if (date.isValid())
        SetDate(date);
    else
        SetDraft(typed);
}

QString DateField::DisplayText() const {
    const QDate date = Date();
    return date.isValid() ? ShownDate(date) : Draft();
}

QString DateField::FromWire(const QString& value) const {
    const QString& suffix = Spec().suffix;
    return !suffix.isEmpty() && value.endsWith(suffix) ? value.chopped(suffix.size()) : value;
}

QString DateField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty() || IsBlank())
        return problem;
    return Date().isValid() ? QString()
                            : Form::tr("\"%1\" must be a date, such as %2.")
                                  .arg(PlainCaption(), ShownDate(QDate(2026, 11, 21)));
}

void TimeField::TypeIn(const QString& text) {
    const QString typed = text.simplified();
    for (const QString& word : Spec().words)
        if (word.compare(typed, Qt::CaseInsensitive) == 0) {
            SetDraft(word);
            return;
        }
    static const QRegularExpression pattern("^(\\d{1,2})(?:[:.]?(\\d{2}))?\\s*(?:([ap])\\.?m?\\.?)?$",
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(typed);
    int hour = match.captured(1).toInt();
    const QString half = match.captured(3).toLower();
    const bool fits = match.hasMatch() && (half.isEmpty() || (hour >= 1 && hour <= 12));
    if (!half.isEmpty())
        hour = hour % 12 + (half == u"p" ? 12 : 0);
    const QTime time(hour, match.captured(2).toInt());
    if (fits && time.isValid())
        SetTime(time);
    else
        SetDraft(typed);
}

QString TimeField::DisplayText() const {
    return Time().isValid() ? QLocale().toString(Time(), QLocale::ShortFormat) : Draft();
}

QString TimeField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty() || IsBlank())
        return problem;
    return Time().isValid() || Spec().words.contains(Draft())
               ? QString()
               : Form::tr("\"%1\" must be a time of day.").arg(PlainCaption());
}

QString IntervalField::Number() const {
    return Spec().letterFirst ? Draft().mid(1) : Draft().chopped(qMin(qsizetype(1), Draft().size()));
}

QString IntervalField::Unit() const {
    if (Draft().isEmpty())
        return Units().isEmpty() ? QString() : Units().first().id;
    return Spec().letterFirst ? Draft().left(1) : Draft().right(1);
}

void IntervalField::SetParts(const QString& number, const QString& unit) {
    SetDraft(Spec().letterFirst ? QString(unit + number.trimmed()) : QString(number.trimmed() + unit));
}

QString IntervalField::DisplayText() const {
    if (IsBlank())
        return {};
    QString unit = Unit();
    for (const PickItem& each : Units())
        if (each.id == Unit())
            unit = each.text.toLower();
    // Some lists name their units in the singular, others in the plural.
    while (unit.size() > 1 && unit.endsWith('s'))
        unit.chop(1);
    return Number() + ' ' + (Number().toInt() == 1 || unit.size() <= 1 ? unit : unit + 's');
}

void IntervalField::Tidy() {
    if (IsChanged() && !IsBlank())
        SetParts(WithoutZeros(Number()), Unit());
}

QString IntervalField::Problem() const {
    if (Spec().required && IsBlank())
        return Field::Problem();
    if (IsBlank())
        return {};
    bool isNumber = false;
    const int value = Number().toInt(&isNumber);
    if (!isNumber || value < 0 || value > Most())
        return Form::tr("\"%1\" must be a whole number from 0 to %2.").arg(PlainCaption()).arg(Most());
    return {};
}

QStringList PasswordField::Words() const {
    constexpr int Bullets = 8; // whatever its length is
    return {QString(Draft().isEmpty() ? 0 : Bullets, QChar(0x2022))};
}

QStringList FlagField::Words() const {
    return {IsOn() ? Form::tr("Yes") : Form::tr("No")};
}

QStringList LetterField::Words() const {
    for (const PickItem& option : Spec().options)
        if (option.id == Draft())
            return {QString(option.text).remove('&')};
    return {Draft()};
}

} // namespace sysadmin
