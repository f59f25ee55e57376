#include "dialogs/settingdialog.h"

#include "dialogs/basewidget.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

SettingDialog::SettingDialog(Qt::WindowFlags flags, QWidget *parent)
    : QDialog(parent)
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(12, 12, 12, 12);
    auto *frame = new QFrame(this);
    frame->setObjectName("frame");
    outer->addWidget(frame);
    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    frameLayout->setSpacing(0);

    auto *titleWidget = new QWidget(frame);
    titleWidget->setObjectName("titleWidget");
    titleWidget->setAttribute(Qt::WA_StyledBackground);
    titleWidget->setFixedHeight(38);
    auto *titleLayout = new QHBoxLayout(titleWidget);
    titleLayout->setContentsMargins(14, 0, 6, 0);
    m_title = new QLabel(titleWidget);
    m_title->setObjectName("title");
    titleLayout->addWidget(m_title, 1);
    auto *close = new QPushButton(titleWidget);
    close->setObjectName("btnClose");
    close->setFixedSize(28, 28);
    titleLayout->addWidget(close);
    frameLayout->addWidget(titleWidget);

    auto *bodyWidget = new QWidget(frame);
    m_body = new QVBoxLayout(bodyWidget);
    m_body->setContentsMargins(24, 18, 24, 18);
    m_body->setSpacing(12);
    frameLayout->addWidget(bodyWidget, 1);

    BaseWidget::setUpDialog(this, frame, titleWidget, flags);
    setWindowIcon(QIcon(":/Images/applogo.png"));
}

QString SettingDialog::titleText() const
{
    return m_title->text();
}

void SettingDialog::setTitleText(const QString &text)
{
    m_title->setText(text);
    setWindowTitle(text);
}

void SettingDialog::addApplyButton()
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    auto *apply = new QPushButton(tr("OK"), this);
    apply->setObjectName("btnApply");
    buttons->addWidget(apply);
    m_body->addLayout(buttons);
}
