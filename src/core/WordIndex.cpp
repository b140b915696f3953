#include "core/WordIndex.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <memory>

namespace sysadmin {

void WordIndex::SetGroups(const QList<NavigationGroup>& groups) {
    m_words.clear();
    m_places.clear();
    m_left.clear();
    for (const NavigationGroup& group : groups)
        for (const ScreenEntry& entry : group.items)
            m_left.append({group.caption, entry});
}

bool WordIndex::LearnNext() {
    if (m_left.isEmpty())
        return false;
    const auto [group, entry] = m_left.takeFirst();
    const std::unique_ptr<Screen> screen(entry.screen.make(m_application, nullptr));
    const QString caption = group + " > " + QString(entry.caption).replace("&&", "&");
    for (const ScreenSubject& subject : screen->Subjects())
        if (!m_places.contains(subject.word))
            m_places.insert(subject.word, {entry.key, caption, subject.fields, entry.icon});
    QSet<QString> known;
    for (const ScreenWord& word : screen->Words()) {
        if (known.contains(word.caption))
            continue;
        known.insert(word.caption);
        m_words.append({entry.key, word.control, word.caption, caption, entry.icon});
    }
    return true;
}

const SubjectPlace* WordIndex::PlaceOf(const QString& word) {
    while (LearnNext()) {
    }
    const auto place = m_places.constFind(word);
    return place == m_places.constEnd() ? nullptr : &*place;
}

QList<FoundWord> WordIndex::Find(const QString& text, int most) {
    const QString wanted = text.simplified();
    if (wanted.isEmpty())
        return {};
    while (LearnNext()) {
    }
    const QStringList parts = wanted.split(' ');
    std::array<QList<FoundWord>, 3> found; // by rank
    for (const FoundWord& word : m_words) {
        const bool fits = std::all_of(parts.begin(), parts.end(), [&](const QString& part) {
            return word.caption.contains(part, Qt::CaseInsensitive);
        });
        if (!fits)
            continue;
        const int rank = word.caption.startsWith(wanted, Qt::CaseInsensitive)              ? 0
                         : word.caption.contains(' ' + parts.first(), Qt::CaseInsensitive) ? 1
                                                                                           : 2;
        found[size_t(rank)].append(word);
    }
    return (found[0] + found[1] + found[2]).mid(0, most);
}

} // namespace sysadmin
