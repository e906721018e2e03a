// FrmList: the list dialog of the object stores: a title, the database
// names in index order, an action button ("Select", "Delete") and Cancel.
// Exec returns the chosen row, or -1 when cancelled or nothing is chosen.
#pragma once
#include <QDialog>
#include <QListWidget>
#include <QPushButton>
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

namespace ombra {
// Fills a read-only, whole-row-selecting table with headers and rows,
// keeping the selected row when it still exists.
void FillRows(QTableWidget* table, const std::vector<std::string>& headers,
              const std::vector<std::vector<std::string>>& rows);
// The selected row of such a table, or -1.
int SelectedRow(QTableWidget* table);
}  // namespace ombra
