#include "mainwindow/lazypage.h"

#include <QEvent>
#include <QVBoxLayout>

LazyPage::LazyPage(Factory factory, QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    FirstShow::call(this, [this, layout, factory = std::move(factory)] { layout->addWidget(factory(this)); });
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
