#pragma once

#include "callslips/Routing.h"

#include <QDialog>

#include <memory>

class QLabel;
class QTabWidget;

namespace sysadmin {

class FormView;
class ListGrid;
struct CallSlipRuleForm;
struct TriedRequestForm;

/// What the list says of a rule.
struct TriedRule {
    QString rank;
    QString queue;
    QString location;
};

/// Tries a request against the rules: which one takes it, why those before it do not, and what no rule takes.
class TryRequestDialog : public QDialog {
    Q_OBJECT

public:
    /// `choices` holds the entries of the choices; `names` belong to `rules`. It begins with a request that
    /// the criteria of the rule in the place `start` describe; -1: with an empty one.
    TryRequestDialog(const CallSlipRuleForm& choices, const QList<callslips::Rule>& rules,
                     const QList<TriedRule>& names, int start, QWidget* parent);
    ~TryRequestDialog() override;

private:
    void Try();
    void ShowLeftOver();
    QString Reason(int place, const callslips::Misfits& misfits) const;
    QString InWords(const callslips::Part& part) const;

    QList<callslips::Rule> m_rules;
    QList<TriedRule> m_names;
    callslips::Routing m_routing;
    std::unique_ptr<TriedRequestForm> m_form;
    std::unique_ptr<FormView> m_view; // behind the form: it goes first
    QLabel* lblVerdict = nullptr;
    QTabWidget* tabResult = nullptr;
    ListGrid* vsfTried = nullptr;
    ListGrid* vsfLeft = nullptr;
    bool m_isLeftShown = false;
};

} // namespace sysadmin
