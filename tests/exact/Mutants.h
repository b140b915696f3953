#pragma once

#include <QString>

#include <functional>
#include <random>
#include <vector>

namespace sysadmin {
struct ScreenDeclaration;
}

namespace sysadmin::server {
struct Subject;
}

namespace sysadmin::exact {

/// One place of a declaration and what becomes of it.
struct Mutant {
    QString what; ///< "frmAcquisitions_VendorReports: caption of txtName: Report Name: -> Rexort Name:"
    std::function<void()> apply;
};

/// Collects the places of a declaration at which a letter, a number, a flag or an order can be another one.
/// The same seed gives the same mutants.
class Mutator {
public:
    explicit Mutator(unsigned seed)
        : m_random(seed) {}

    /// One letter is another one.
    void Text(const QString& what, QString& text);
    void Flag(const QString& what, bool& flag);
    void Number(const QString& what, const std::function<void(int by)>& add);
    template <class List>
    void Order(const QString& what, List& list) {
        for (qsizetype i = 0; i + 1 < list.size(); ++i)
            m_mutants.push_back({what + QString(": %1 and %2 swapped").arg(i).arg(i + 1),
                                 [&list, i] { list.swapItemsAt(i, i + 1); }});
    }
    void Add(const QString& what, const std::function<void()>& apply) { m_mutants.push_back({what, apply}); }

    std::vector<Mutant>& Mutants() { return m_mutants; }

private:
    std::mt19937 m_random;
    std::vector<Mutant> m_mutants;
};

/// Every place of a screen's declaration that shows, travels or decides something.
std::vector<Mutant> MutantsOf(ScreenDeclaration& screen, unsigned seed);
std::vector<Mutant> MutantsOf(server::Subject& subject, unsigned seed);

} // namespace sysadmin::exact
