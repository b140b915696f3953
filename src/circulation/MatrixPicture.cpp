#include "circulation/MatrixPicture.h"

#include "circulation/MatrixDialog.h"
#include "core/Application.h"
#include "core/data/Tr.h"
#include "loan/ReadPolicy.h"

#include <QLocale>

#include <algorithm>

namespace sysadmin {

namespace {

using loan::Unit;

double Days(double period, Unit unit) {
    constexpr double Hours = 24;
    constexpr double Minutes = 24 * 60;
    return unit == Unit::Hour ? period / Hours : unit == Unit::Minute ? period / Minutes : period;
}

/// The first class whose bound the value does not pass; behind the last bound is one more.
int ClassWithin(double value, const QList<double>& bounds) {
    return int(std::lower_bound(bounds.begin(), bounds.end(), value) - bounds.begin());
}

QString UnitName(Unit unit, double count) {
    const bool one = count == 1;
    switch (unit) {
    case Unit::Minute:
        return one ? Tr("minute") : Tr("minutes");
    case Unit::Hour:
        return one ? Tr("hour") : Tr("hours");
    case Unit::Day:
        return one ? Tr("day") : Tr("days");
    case Unit::Term:
        return one ? Tr("term") : Tr("terms");
    case Unit::Indefinite:
        return Tr("without an end");
    }
    return {};
}

QString Period(double count, Unit unit) {
    return unit == Unit::Indefinite ? UnitName(unit, count)
                                    : QLocale().toString(count, 'g', 6) + ' ' + UnitName(unit, count);
}

/// "Max # of Sequential Renewals" for its tag.
QHash<QString, QString> CaptionsByTag(MatrixForm& form) {
    QHash<QString, QString> captions;
    for (const Field* field : form.Fields())
        captions.insert(field->Tag(), field->PlainCaption());
    return captions;
}

} // namespace

bool MatrixPicture::Read(Application& application, const MatrixGroup& given, const MatrixPicture* like) {
    const MatrixGroup group = given; // it may be this picture's own
    const std::optional<MatrixChoices> choices = ReadMatrixChoices(application, group);
    if (!choices)
        return false;
    const MatrixSettings settings = AskMatrixSettings(application);
    MatrixForm form(application, settings);
    m_usesDemerits = settings.usesDemerits;
    m_decimals = m_usesDemerits ? 0 : application.profile.MoneyDecimals();
    m_captions = CaptionsByTag(form);
    application.channel.PutField("ID", group.id);
    application.channel.PutField("CID", group.clusterId);
    if (const qint16 status = application.channel.SendRequest("LstMatRule")) {
        application.ReportRequestFailure(status, "Edit Policy Matrix Definitions",
                                         "Circulation Policy Matrix");
        return false;
    }
    QList<QPair<QString, QString>> rules;
    for (const wire::Field& field : application.channel.ReplyFields())
        rules.append({field.tag, field.value});
    m_group = group;
    m_choices = *choices;
    m_group.shortLoans = choices->ShortLoans();
    Arrange(like);
    Enter(rules);
    return true;
}

// By name, short loans together behind the others.
void MatrixPicture::Arrange(const MatrixPicture* like) {
    const auto arrange = [](QList<MatrixChoices::Choice>& choices, const QHash<qint64, int>* places) {
        const auto placeOf = [places](const MatrixChoices::Choice& choice) {
            return places ? places->value(choice.id.toLongLong(), int(places->size()))
                          : int(choice.isShortLoan);
        };
        std::sort(choices.begin(), choices.end(), [&](const auto& a, const auto& b) {
            const int first = placeOf(a);
            const int second = placeOf(b);
            return first != second ? first < second : QString::localeAwareCompare(a.name, b.name) < 0;
        });
    };
    arrange(m_choices.patronGroups, like ? &like->m_rowOf : nullptr);
    arrange(m_choices.itemTypes, like ? &like->m_columnOf : nullptr);
    m_rowOf.clear();
    m_columnOf.clear();
    for (int row = 0; row < Rows(); ++row)
        m_rowOf.insert(m_choices.patronGroups[row].id.toLongLong(), row);
    for (int column = 0; column < Columns(); ++column)
        m_columnOf.insert(m_choices.itemTypes[column].id.toLongLong(), column);
}

void MatrixPicture::Enter(const QList<QPair<QString, QString>>& rules) {
    m_entries = QList<Entry>(qsizetype(Rows()) * Columns());
    m_tags.clear();

    loan::Group read;
    loan::ReadRules(rules, read);
    for (const loan::Rule& rule : read.rules)
        if (const Cell cell = Find(rule.patronGroup, rule.itemType); Contains(cell)) {
            Entry& entry = m_entries[cell.y() * Columns() + cell.x()];
            entry.id = QString::number(rule.id);
            entry.rule = rule;
        }
    QHash<QString, QStringList> values; // by the rule's id
    QStringList* at = nullptr;
    for (const auto& [tag, value] : rules) {
        if (tag == u"MI") {
            at = &values[value];
        } else if (at && tag != u"MP" && tag != u"MII") {
            if (at->size() == m_tags.size() && values.size() == 1)
                m_tags.append(tag);
            at->append(value);
        }
    }
    for (Entry& entry : m_entries)
        entry.values = values.value(entry.id);
}

MatrixPicture::Cell MatrixPicture::Find(qint64 patronGroup, qint64 itemType) const {
    return {m_columnOf.value(itemType, -1), m_rowOf.value(patronGroup, -1)};
}

bool MatrixPicture::Contains(Cell cell) const {
    return cell.x() >= 0 && cell.y() >= 0 && cell.x() < Columns() && cell.y() < Rows();
}

const MatrixPicture::Entry& MatrixPicture::At(Cell cell) const {
    return m_entries[cell.y() * Columns() + cell.x()];
}

MatrixEntry MatrixPicture::EntryAt(Cell cell) const {
    const MatrixChoices::Choice& patron = m_choices.patronGroups[cell.y()];
    const MatrixChoices::Choice& item = m_choices.itemTypes[cell.x()];
    return {At(cell).id, patron.id, item.id, patron.name, item.name};
}

std::optional<int> MatrixPicture::ClassOf(Cell cell, MatrixMeasure measure) const {
    const Entry& entry = At(cell);
    if (entry.id.isEmpty() || !entry.rule.mayCharge)
        return {};
    const loan::Rule& rule = entry.rule;
    switch (measure) {
    case MatrixMeasure::LoanPeriod:
        if (rule.unit == Unit::Indefinite)
            return 6;
        if (rule.unit == Unit::Term)
            return 5;
        return ClassWithin(Days(rule.period, rule.unit), {0.25, 1, 7, 14, 28});
    case MatrixMeasure::Fine:
        return ClassWithin(double(rule.fineRate) / loan::AmountUnit / Days(1, rule.fineUnit),
                           {0, 0.25, 0.5, 1, 5});
    case MatrixMeasure::Renewals:
        return ClassWithin(rule.mostRenewals, {0, 1, 2, 5});
    }
    return {};
}

QStringList MatrixPicture::Classes(MatrixMeasure measure, bool countsDemerits) {
    switch (measure) {
    case MatrixMeasure::LoanPeriod:
        return {Tr("to 6 hours"), Tr("to a day"),     Tr("to 7 days"), Tr("to 14 days"),
                Tr("to 28 days"), Tr("longer, term"), Tr("no end")};
    case MatrixMeasure::Fine:
        return {countsDemerits ? Tr("no demerits") : Tr("no fine"),
                Tr("to 0.25 a day"),
                Tr("to 0.50"),
                Tr("to 1"),
                Tr("to 5"),
                Tr("more")};
    case MatrixMeasure::Renewals:
        return {Tr("no renewal"), Tr("1"), Tr("2"), Tr("3 to 5"), Tr("more")};
    }
    return {};
}

QString MatrixPicture::ShortText(Cell cell, MatrixMeasure measure) const {
    const Entry& entry = At(cell);
    if (entry.id.isEmpty())
        return {};
    const loan::Rule& rule = entry.rule;
    if (!rule.mayCharge)
        return QString(QChar(0x2013)); // a dash
    switch (measure) {
    case MatrixMeasure::LoanPeriod:
        switch (rule.unit) {
        case Unit::Indefinite:
            return QString(QChar(0x221e)); // infinity
        case Unit::Term:
            return "T";
        default:
            return QLocale().toString(rule.period, 'g', 4) + (rule.unit == Unit::Hour     ? "h"
                                                              : rule.unit == Unit::Minute ? "m"
                                                                                          : "");
        }
    case MatrixMeasure::Fine:
        return rule.fineRate ? QString::number(double(rule.fineRate) / loan::AmountUnit) : QString("0");
    case MatrixMeasure::Renewals:
        return QString::number(rule.mostRenewals);
    }
    return {};
}

QString MatrixPicture::FineInWords(const loan::Rule& rule) const {
    if (!rule.fineRate)
        return m_usesDemerits ? Tr("no demerits") : Tr("no fine");
    QString words = (m_usesDemerits ? Tr("%1 demerits a %2") : Tr("fine %1 a %2"))
                        .arg(loan::AmountText(rule.fineRate, m_decimals), UnitName(rule.fineUnit, 1));
    if (rule.mostFine)
        words += Tr(", %1 at most").arg(loan::AmountText(*rule.mostFine, m_decimals));
    if (rule.grace)
        words += Tr(", after %1 of grace").arg(Period(rule.grace, rule.unit));
    return words;
}

QString MatrixPicture::InWords(Cell cell) const {
    const QString name = EntryAt(cell).Name() + ": ";
    const Entry& entry = At(cell);
    if (entry.id.isEmpty())
        return name + Tr("no rule, so nothing can be lent.");
    const loan::Rule& rule = entry.rule;
    QStringList parts;
    if (!rule.mayCharge) {
        parts << Tr("not lent");
    } else {
        parts << Tr("lent for %1")
                     .arg(Period(rule.period, rule.unit))
                     .replace(Tr("for without"), Tr("without"));
        parts << (rule.mostRenewals ? Tr("%1 renewals of %2")
                                          .arg(rule.mostRenewals)
                                          .arg(Period(rule.renewalPeriod, rule.renewalUnit))
                                    : Tr("no renewal"));
        parts << FineInWords(rule);
    }
    QStringList requests;
    if (rule.allowsHolds)
        requests << Tr("holds");
    if (rule.allowsRecalls)
        requests << Tr("recalls");
    if (rule.allowsCallSlips)
        requests << Tr("call slips");
    parts << (requests.isEmpty() ? Tr("no requests") : requests.join(", "));
    if (IsShortLoan(cell.x()))
        parts << Tr("short loan");
    return name + parts.join("; ") + '.';
}

QStringList MatrixPicture::Differences(Cell cell, const MatrixPicture& other) const {
    const MatrixEntry here = EntryAt(cell);
    const Cell there = other.Find(here.patronGroup.toLongLong(), here.itemType.toLongLong());
    if (!other.Contains(there))
        return {Tr("Not in this group")};
    const Entry& mine = At(cell);
    const Entry& theirs = other.At(there);
    if (mine.id.isEmpty() != theirs.id.isEmpty())
        return {mine.id.isEmpty() ? Tr("Only there is a rule") : Tr("Only here is a rule")};
    QStringList differences;
    for (qsizetype i = 0; i < mine.values.size(); ++i)
        if (mine.values[i].trimmed() != theirs.values.value(i).trimmed())
            differences.append(m_captions.value(m_tags.value(i), m_tags.value(i)));
    return differences;
}

} // namespace sysadmin
