#include "ui/FrmList.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

FrmList::FrmList(QWidget* owner, const std::string& title, const std::vector<std::string>& items,
                 const std::string& button)
    : QDialog(owner) {
    setObjectName("FrmList");
    setWindowTitle(Q(title));
    LstItems = new QListWidget(this);
    LstItems->setObjectName("LstItems");
    for (const std::string& i : items) LstItems->addItem(Q(i));
    ComAction = new QPushButton(Q(button), this);
    ComAction->setObjectName("ComAction");
    ComAction->setDefault(true);
    ComCancel = new QPushButton("Cancel", this);
    ComCancel->setObjectName("ComCancel");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ComAction);
    buttons->addWidget(ComCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(LstItems);
    layout->addLayout(buttons);
    connect(ComAction, &QPushButton::clicked, this, &QDialog::accept);
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(LstItems, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    resize(320, 360);
}

int FrmList::Choose() {
    if (exec() != QDialog::Accepted) return -1;
    return LstItems->currentRow();
}

}  // namespace ombra

#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableWidget>

namespace ombra {

void FillRows(QTableWidget* table, const std::vector<std::string>& headers,
              const std::vector<std::vector<std::string>>& rows) {
    int keep = SelectedRow(table);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->verticalHeader()->setVisible(false);
    table->setColumnCount(int(headers.size()));
    QStringList h;
    for (const std::string& s : headers) h << Q(s);
    table->setHorizontalHeaderLabels(h);
    table->setRowCount(int(rows.size()));
    for (int r = 0; r < int(rows.size()); ++r)
        for (int c = 0; c < int(rows[size_t(r)].size()) && c < int(headers.size()); ++c)
            table->setItem(r, c, new QTableWidgetItem(Q(rows[size_t(r)][size_t(c)])));
    table->resizeColumnsToContents();
    if (keep >= 0 && keep < int(rows.size())) table->selectRow(keep);
}

int SelectedRow(QTableWidget* table) {
    auto sel = table->selectionModel() ? table->selectionModel()->selectedRows() : QModelIndexList{};
    return sel.isEmpty() ? -1 : sel.first().row();
}

QTableWidget* StoreTable(QWidget* parent, const char* name, std::function<void()> selectionChanged,
                         std::function<void()> doubleClicked) {
    auto* t = new QTableWidget(parent);
    t->setObjectName(name);
    QObject::connect(t, &QTableWidget::itemSelectionChanged, parent, std::move(selectionChanged));
    QObject::connect(t, &QTableWidget::cellDoubleClicked, parent, [doubleClicked] { doubleClicked(); });
    return t;
}

QHBoxLayout* ButtonRow(QDialog* window, QPushButton* properties, std::initializer_list<QPushButton*> commands,
                       QPushButton* remove, QPushButton** close) {
    auto* row = new QHBoxLayout;
    row->addWidget(properties);
    for (QPushButton* b : commands) row->addWidget(b);
    row->addStretch(1);
    row->addWidget(remove);
    auto* closeButton = new QPushButton("&Close", window);
    closeButton->setObjectName("ComClose");
    closeButton->setAutoDefault(false);
    QObject::connect(closeButton, &QPushButton::clicked, window, &QDialog::close);
    row->addWidget(closeButton);
    if (close) *close = closeButton;
    return row;
}

int16_t SelectedSlot(QTableWidget* table, const std::vector<int16_t>& rowSlots) {
    int row = SelectedRow(table);
    return row >= 0 && row < int(rowSlots.size()) ? rowSlots[size_t(row)] : int16_t(0);
}

}  // namespace ombra
