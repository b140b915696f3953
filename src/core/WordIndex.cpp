#include "core/WordIndex.h"

#include "core/Screen.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <memory>

namespace sysadmin {

void WordIndex::SetGroups(const QList<NavigationGroup>& groups) {
    m_groups = groups;
    m_words.clear();
    m_learned = false;
}

void WordIndex::Learn() {
    m_learned = true;
    for (const NavigationGroup& group : m_groups)
        for (const ScreenEntry& entry : group.items) {
            const std::unique_ptr<Screen> screen(entry.screen.make(m_application, nullptr));
            QSet<QString> known;
            for (const ScreenWord& word : screen->Words()) {
                if (known.contains(word.caption))
                    continue;
                known.insert(word.caption);
                m_words.append({entry.key, word.control, word.caption,
                                group.caption + " > " + QString(entry.caption).replace("&&", "&"),
                                entry.icon});
            }
        }
}

QList<FoundWord> WordIndex::Find(const QString& text, int most) {
    const QString wanted = text.simplified();
    if (wanted.isEmpty())
        return {};
    if (!m_learned)
        Learn();
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
