#pragma once

#include <QDialog>
#include <QStringList>
#include <QTimer>

namespace Ui {
class Usermanagerdialog;
}

// Lists the operator accounts and adds, edits and deletes them. The seeded
// ADMIN account cannot be selected here.
class Usermanagerdialog : public QDialog
{
    Q_OBJECT

public:
    enum State { Idle = 0, Selected = 1, Entering = 2 };

    explicit Usermanagerdialog(QWidget *parent = nullptr);
    ~Usermanagerdialog() override;

private slots:
    void on_btnAdd_clicked();
    void on_btnEdit_clicked();
    void on_btnDel_clicked();
    void on_btnSave_clicked();
    void on_btnCancel_clicked();
    void on_btnClose_clicked();
    void cellClickedSlot(int row, int column);

private:
    void loadUsers();
    // Makes the row whose `column` reads `text` current, or goes idle when there is none.
    void selectRow(int column, const QString &text);
    void setState(State state);
    void showTip(const QString &text);
    int currentId() const;

    Ui::Usermanagerdialog *ui;
    QStringList m_names;
    bool m_adding = false;
    int m_editedId = -1;
    QTimer m_tipTimer;
};
