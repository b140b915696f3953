#pragma once

#include "circulation/LoanAnswer.h"
#include "circulation/LoanForm.h"
#include "circulation/PolicyReader.h"
#include "framework/FormScreen.h"

#include <memory>
#include <optional>

class QTextBrowser;
class QTextDocument;

namespace sysadmin {

class LoanTimeline;
struct LoanQuestion;

/// Test of a loan: what becomes of it by the settings as they are stored. The answer follows every edit; the
/// server is asked only when the screen opens, when settings have changed, and once for each policy group.
class frmCirculation_LoanTest : public FormScreen {
    Q_OBJECT

public:
    frmCirculation_LoanTest(Application& application, QWidget* parent);

    void LoadScreen() override;
    void OnClusterChanged() override { Reload(); }
    /// Chooses what the question says; what it leaves open stays.
    void Ask(const LoanQuestion& question);

private:
    QWidget* BuildAnswerSide();
    void Reload();
    void Follow(const QString& subject);
    void FillChoices();
    void Reckon();
    /// Gets what the reckoning of the question needs; false when that failed (and was reported).
    bool ReadFor(const loan::Request& request);
    void Report(qint16 status);
    void Show(const LoanAnswer& answer);
    const loan::Group* GroupOf(const loan::Request& request) const;
    void ShowRule();
    std::unique_ptr<QTextDocument> Document() const;
    void Print();
    void SavePdf();

    LoanForm& m_form = KeepForm<LoanForm>();
    std::optional<PolicyReader> m_reader;
    LoanAnswer m_shown;
    bool m_isOld = false;     // settings have changed
    bool m_isFilling = false; // several fields are set that make sense only together
    bool m_failed = false;

    QLabel* lblAnswer = nullptr;
    QTextBrowser* txtAnswer = nullptr;
    LoanTimeline* picLoan = nullptr;
    QPushButton* cmdRule = nullptr;
    QPushButton* cmdCopy = nullptr;
    QPushButton* cmdPrint = nullptr;
    QPushButton* cmdPdf = nullptr;
};

} // namespace sysadmin
