#include "mainwindow/renamedialog.h"
#include "ui_renamedialog.h"

#include "dialogs/basewidget.h"

RenameDialog::RenameDialog(const QString &currentName, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::RenameDialog)
    , m_currentName(currentName)
{
    ui->setupUi(this);
    BaseWidget::setUpDialog(this, ui->frame, ui->titleWidget,
                            Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    ui->nameEdit->setText(currentName);
    ui->nameEdit->selectAll();
    // Typing goes straight into the name: a space must not press a focused button
    // (the title bar's close button takes no focus), and Enter confirms.
    ui->nameEdit->setFocus();
    connect(ui->btnOk, &QPushButton::clicked, this, &RenameDialog::confirmSlot);
    connect(ui->btnCancel, &QPushButton::clicked, this, [this] { done(0); });
}

RenameDialog::~RenameDialog()
{
    delete ui;
}

void RenameDialog::confirmSlot()
{
    const QString newName = ui->nameEdit->text();
    if (!newName.isEmpty() && newName != m_currentName)
        emit Sig_SetNewName(newName);
    // An empty or unchanged name closes the dialog as if applied.
    done(1);
}

void RenameDialog::on_btnClose_clicked()
{
    done(0);
}
