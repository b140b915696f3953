#include "search/TitleListPreview.h"

#include "marc/Record.h"
#include "search/RecordValues.h"
#include "search/frmSearch_BibDisplay.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace sysadmin {

namespace {

/// What a title list shows of a record: without the marks that end parts of it.
QString ShownValue(const marc::Record& record, const BibText& text) {
    QStringList values = ValuesOf(record, text.field, text.subfields);
    for (QString& value : values)
        while (!value.isEmpty() && QString(" /:;,").contains(value.back()))
            value.chop(1);
    return values.join("; ");
}

} // namespace

TitleListPreview::TitleListPreview(const TitleListForm& form, QWidget* parent)
    : QTableWidget(parent)
    , m_form(form)
    , m_later(new QTimer(this)) {
    setObjectName("vsfPreview");
    setAccessibleName(tr("Preview of the title list"));
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    verticalHeader()->hide();
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setRowCount(int(SampleTitles().size()));
    // A record is loaded field by field, and drawn once.
    m_later->setSingleShot(true);
    m_later->setInterval(0);
    connect(m_later, &QTimer::timeout, this, &TitleListPreview::Draw);
    connect(&form, &Form::Changed, this, [this] {
        if (isVisible())
            m_later->start();
    });
}

void TitleListPreview::showEvent(QShowEvent* event) {
    QTableWidget::showEvent(event);
    Draw();
}

void TitleListPreview::changeEvent(QEvent* event) {
    QTableWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && isVisible())
        m_later->start();
}

void TitleListPreview::Draw() {
    const QList<GridRow> columns = m_form.columns.Lists().Selected();
    setColumnCount(int(columns.size()));
    const int letter = fontMetrics().horizontalAdvance('0');
    for (int column = 0; column < columns.size(); ++column) {
        const GridRow& row = columns[column];
        setHorizontalHeaderItem(column,
                                new QTableWidgetItem(row.cells.value(TitleColumns::Heading).trimmed()));
        const int width = qBound(1, row.cells.value(TitleColumns::Width).toInt(), wire::titles::MostWidth);
        setColumnWidth(column, (width + 2) * letter); // there is room in front of a text and behind it
        const BibText text = m_form.columns.TextOf(row.key);
        for (int title = 0; title < rowCount(); ++title)
            setItem(title, column, new QTableWidgetItem(ShownValue(SampleTitles()[title], text)));
    }
    // What was just edited comes into sight.
    if (const auto edited = std::mismatch(columns.begin(), columns.end(), m_drawn.begin(), m_drawn.end());
        !m_drawn.isEmpty() && edited.first != columns.end())
        scrollTo(model()->index(0, int(edited.first - columns.begin())));
    m_drawn = columns;
    int height = horizontalHeader()->sizeHint().height() + 2 * frameWidth() +
                 horizontalScrollBar()->sizeHint().height();
    for (int title = 0; title < rowCount(); ++title)
        height += rowHeight(title);
    setFixedHeight(height);
}

} // namespace sysadmin

#include "moc_TitleListPreview.cpp"
