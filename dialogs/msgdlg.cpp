#include "dialogs/msgdlg.h"
#include "ui_msgdlg.h"

#include "dialogs/basewidget.h"

MsgDlg::MsgDlg(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::MsgDlg)
{
    ui->setupUi(this);
    BaseWidget::setUpDialog(this, ui->frame, ui->titleWidget, Qt::Dialog);
    setWindowIcon(QIcon(":/Images/applogo.png"));
}

MsgDlg::~MsgDlg()
{
    delete ui;
}

void MsgDlg::setTitle(const QString &title)
{
    ui->title->setText(title);
}

void MsgDlg::setText(const QString &text)
{
    ui->labelText->setText(text);
}

QString MsgDlg::text() const
{
    return ui->labelText->text();
}

int MsgDlg::showMessage(const QString &text, const QString &title, QWidget *parent)
{
    MsgDlg dialog(parent);
    dialog.setTitle(title);
    dialog.setText(text);
    return dialog.exec();
}

void MsgDlg::on_btnOk_clicked()
{
    done(1);
}

void MsgDlg::on_btnClose_clicked()
{
    done(0);
}
