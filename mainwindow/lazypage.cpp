#include "mainwindow/lazypage.h"

#include <QEvent>
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

FirstShow::FirstShow(QWidget *page, std::function<void()> build)
    : QObject(page)
    , m_build(std::move(build))
{
    page->installEventFilter(this);
}

void FirstShow::call(QWidget *page, std::function<void()> build)
{
    new FirstShow(page, std::move(build));
}

bool FirstShow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        watched->removeEventFilter(this);
        m_build();
        deleteLater();
    }
    return false;
}
