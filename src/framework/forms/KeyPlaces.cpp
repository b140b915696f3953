#include "framework/forms/KeyPlaces.h"

#include <algorithm>
#include <cstdlib>

namespace sysadmin {

namespace {

constexpr int FewAsked = 4; // looking through the list takes a fraction of what making the places takes
constexpr int MostDrift = 128;
constexpr int MostMoved = 64; // rows of a new order that are noted one by one

} // namespace

int KeyPlaces::Find(const QList<GridRow>& rows, const QString& key) const {
    if (!IsMade() && m_asked++ < FewAsked)
        return LookThrough(rows, key);
    if (!IsMade())
        Make(rows);
    const int noted = m_places.value(key, -1);
    if (noted < 0)
        return -1;
    const auto stands = [&](int place) {
        return place >= 0 && place < rows.size() && rows.at(place).key == key;
    };
    for (int beside = 0; beside <= m_drift; ++beside) {
        if (stands(noted - beside))
            return noted - beside;
        if (stands(noted + beside))
            return noted + beside;
    }
    return -1;
}

void KeyPlaces::Inserted(int place, const QString& key) {
    if (!IsMade())
        return;
    if (HasTwins() || m_places.contains(key)) {
        Clear();
        return;
    }
    m_places.insert(key, place);
    ++m_count;
    Drift(1);
}

void KeyPlaces::Removed(const QString& key) {
    if (!IsMade())
        return;
    if (HasTwins()) {
        Clear();
        return;
    }
    m_places.remove(key);
    --m_count;
    Drift(1);
}

void KeyPlaces::Arranged(const QList<GridRow>& rows, const std::vector<int>& order) {
    if (!IsMade())
        return;
    // Mostly one row went far and all others by one place.
    int most = 0;
    std::vector<int> far;
    for (int place = 0; place < int(order.size()) && far.size() <= MostMoved; ++place) {
        const int by = std::abs(order[size_t(place)] - place);
        if (by > MostMoved)
            far.push_back(place);
        else
            most = std::max(most, by);
    }
    if (HasTwins() || far.size() > MostMoved) {
        Clear();
        return;
    }
    for (const int place : far)
        m_places[rows.at(place).key] = place;
    Drift(most);
}

void KeyPlaces::Clear() {
    m_places.clear();
    m_drift = 0;
    m_count = -1;
    m_asked = 0;
}

int KeyPlaces::LookThrough(const QList<GridRow>& rows, const QString& key) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const GridRow& row) { return row.key == key; });
    return found == rows.end() ? -1 : int(found - rows.begin());
}

void KeyPlaces::Make(const QList<GridRow>& rows) const {
    m_places.clear();
    m_places.reserve(rows.size());
    for (qsizetype place = rows.size(); place-- > 0;)
        m_places.insert(rows.at(place).key, int(place));
    m_count = rows.size();
    m_drift = 0;
}

void KeyPlaces::Drift(int by) {
    m_drift += by;
    if (m_drift > MostDrift)
        Clear();
}

} // namespace sysadmin
