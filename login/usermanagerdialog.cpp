#include "login/usermanagerdialog.h"
#include "ui_usermanagerdialog.h"

#include "dialogs/basewidget.h"
#include "store/accountstore.h"

Usermanagerdialog::Usermanagerdialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::Usermanagerdialog)
{
    ui->setupUi(this);
    BaseWidget::setUpDialog(this, ui->frame, ui->titleWidget, Qt::Tool);

    ui->tableWidget->setEditTriggers(QAbstractItemView::NoEditTriggers);
    ui->tableWidget->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_tipTimer.setInterval(2000);
    m_tipTimer.setSingleShot(true);

    connect(ui->tableWidget, &QTableWidget::cellClicked, this, &Usermanagerdialog::cellClickedSlot);
    // The keyboard moves the selection too, and the fields follow it.
    connect(ui->tableWidget, &QTableWidget::currentCellChanged, this,
            [this](int row, int column) { cellClickedSlot(row, column); });
    connect(&m_tipTimer, &QTimer::timeout, ui->tipLabel, &QLabel::clear);

    loadUsers();
    setState(Idle);
}

Usermanagerdialog::~Usermanagerdialog()
{
    delete ui;
}

void Usermanagerdialog::loadUsers()
{
    const RowList rows = AccountStore::allUsers();
    m_names.clear();
    // Emptying the table moves its current cell; the caller decides the state.
    const QSignalBlocker blocker(ui->tableWidget);
    ui->tableWidget->setRowCount(0);
    for (const auto &row : rows) {
        const int at = ui->tableWidget->rowCount();
        ui->tableWidget->insertRow(at);
        ui->tableWidget->setItem(at, 0, new QTableWidgetItem(row.value(0).toString()));
        ui->tableWidget->setItem(at, 1, new QTableWidgetItem(row.value(1).toString()));
        m_names << row.value(1).toString();
    }
}

void Usermanagerdialog::selectRow(int column, const QString &text)
{
    for (int row = 0; row < ui->tableWidget->rowCount(); ++row) {
        const QTableWidgetItem *item = ui->tableWidget->item(row, column);
        if (item && item->text() == text) {
            ui->tableWidget->setCurrentCell(row, 1);
            cellClickedSlot(row, 1);
            return;
        }
    }
    setState(Idle);
}

void Usermanagerdialog::setState(State state)
{
    ui->btnAdd->setEnabled(state != Entering);
    ui->btnDel->setEnabled(state == Selected);
    ui->btnEdit->setEnabled(state == Selected);
    ui->btnSave->setEnabled(state == Entering);
    ui->btnCancel->setEnabled(state == Entering);
    for (QLineEdit *edit : {ui->usernameEdit, ui->passwordEdit, ui->repeatEdit})
        edit->setEnabled(state == Entering);
    if (state == Idle) {
        ui->usernameEdit->clear();
        ui->passwordEdit->clear();
        ui->repeatEdit->clear();
    } else if (state == Entering) {
        ui->passwordEdit->clear();
        ui->repeatEdit->clear();
    }
}

void Usermanagerdialog::cellClickedSlot(int row, int)
{
    const QTableWidgetItem *nameItem = ui->tableWidget->item(row, 1);
    const QString name = nameItem ? nameItem->text() : QString();
    // The fields show the selected row only; no password dots left from before.
    ui->passwordEdit->clear();
    ui->repeatEdit->clear();
    if (!nameItem || name == QLatin1String("ADMIN")) {
        ui->usernameEdit->clear();
        setState(Idle);
        return;
    }
    ui->usernameEdit->setText(name);
    setState(Selected);
}

void Usermanagerdialog::on_btnAdd_clicked()
{
    ui->usernameEdit->clear();
    m_adding = true;
    setState(Entering);
}

void Usermanagerdialog::on_btnEdit_clicked()
{
    m_adding = false;
    m_editedId = currentId();
    setState(Entering);
}

void Usermanagerdialog::on_btnCancel_clicked()
{
    // Back to the row that is still current (if any), as it is stored.
    cellClickedSlot(ui->tableWidget->currentRow(), 1);
}

void Usermanagerdialog::on_btnDel_clicked()
{
    const bool saved = AccountStore().deleteUser(currentId());
    setState(Idle);
    loadUsers();
    if (!saved)
        showTip(tr("the change could not be saved!"));
}

void Usermanagerdialog::on_btnSave_clicked()
{
    const QString name = ui->usernameEdit->text();
    const QString password = ui->passwordEdit->text();
    if (password.trimmed() != ui->repeatEdit->text().trimmed()) {
        showTip(tr("two password not equation!"));
        return;
    }
    AccountStore accounts;
    bool saved = false;
    if (m_adding) {
        if (m_names.contains(name)) {
            showTip(QStringLiteral("user have exsits!"));
            return;
        }
        saved = accounts.addUser(name, password);
    } else {
        saved = accounts.updateUser(m_editedId, name, password);
    }
    // The reloaded list shows the real state; a refused write is also said, so
    // it is never mistaken for a saved one. The account saved stays selected, so
    // Edit and Delete act on it.
    loadUsers();
    if (m_adding)
        selectRow(1, name);
    else
        selectRow(0, QString::number(m_editedId));
    if (!saved)
        showTip(tr("the change could not be saved!"));
}

void Usermanagerdialog::on_btnClose_clicked()
{
    done(0);
}

void Usermanagerdialog::showTip(const QString &text)
{
    ui->tipLabel->setText(text);
    m_tipTimer.start();
}

int Usermanagerdialog::currentId() const
{
    const QTableWidgetItem *idItem = ui->tableWidget->item(ui->tableWidget->currentRow(), 0);
    return idItem ? idItem->text().toInt() : -1;
}
