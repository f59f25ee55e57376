#include "mainwindow/lazypage.h"

#include <QVBoxLayout>

LazyPage::LazyPage(Factory factory, QWidget *parent)
    : QWidget(parent)
    , m_factory(std::move(factory))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

QWidget *LazyPage::content()
{
    if (!m_content) {
        m_content = m_factory(this);
        layout()->addWidget(m_content);
    }
    return m_content;
}

void LazyPage::showEvent(QShowEvent *event)
{
    content();
    QWidget::showEvent(event);
}
