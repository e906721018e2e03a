// FrmList: the list dialog of the object stores: a title, the database
// names in index order, an action button ("Select", "Delete") and Cancel.
// Exec returns the chosen row, or -1 when cancelled or nothing is chosen.
#pragma once
#include <QDialog>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace ombra {

class FrmList : public QDialog {
    Q_OBJECT
public:
    FrmList(QWidget* owner, const std::string& title, const std::vector<std::string>& items, const std::string& button);
    int Choose();

    QListWidget* LstItems;
    QPushButton *ComAction, *ComCancel;
};

}  // namespace ombra

class QTableWidget;
class QHBoxLayout;

namespace ombra {
// Fills a read-only, whole-row-selecting table with headers and rows,
// keeping the selected row when it still exists.
void FillRows(QTableWidget* table, const std::vector<std::string>& headers,
              const std::vector<std::vector<std::string>>& rows);
// The selected row of such a table, or -1.
int SelectedRow(QTableWidget* table);
// The table of a store's list window, named `name`: picking a row calls
// `selectionChanged`, a double click on a row `doubleClicked`.
QTableWidget* StoreTable(QWidget* parent, const char* name, std::function<void()> selectionChanged,
                         std::function<void()> doubleClicked);
// The buttons of such a window, the same command at the same place in
// every list: "&Properties" first, then `commands` left to right, and at
// the right end "&Delete" and a "&Close" that closes `window` (as Esc does).
// Returns the row; `close`, when given, receives the Close button.
QHBoxLayout* ButtonRow(QDialog* window, QPushButton* properties, std::initializer_list<QPushButton*> commands,
                       QPushButton* remove, QPushButton** close = nullptr);
// The store slot of the selected row, `rowSlots` holding each row's slot; 0
// when no row is selected or the row has no slot.
int16_t SelectedSlot(QTableWidget* table, const std::vector<int16_t>& rowSlots);
// Fills such a table from a store's rows: `cells` gives a row's texts and
// each row's Slot goes to `rowSlots`, in row order.
template <typename Row, typename Cells>
void FillSlotRows(QTableWidget* table, const std::vector<std::string>& headers, const std::vector<Row>& rows,
                  Cells cells, std::vector<int16_t>& rowSlots) {
    std::vector<std::vector<std::string>> texts;
    rowSlots.clear();
    for (const Row& r : rows) {
        texts.push_back(cells(r));
        rowSlots.push_back(r.Slot);
    }
    FillRows(table, headers, texts);
}

// A click on `button` of a store's list window runs `act` with the slot of
// the selected row (0 when none), then refills the window.
template <typename Window, typename Act>
void OnSelectedSlot(Window* window, QPushButton* button, Act act) {
    QObject::connect(button, &QPushButton::clicked, window, [window, act] {
        act(window->SelectedSlot());
        window->Refill();
    });
}

// Shows the one list window of its kind, made by `make` when there is none
// yet; it deletes itself when closed, and `window` empties then. Each
// showing refills it and brings it to the front.
template <typename Window, typename Make>
void ShowListWindow(QPointer<Window>& window, Make make) {
    if (!window) {
        window = make();
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->Refill();
    window->show();
    window->raise();
}
}  // namespace ombra
