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

DeferredLayout::DeferredLayout(QWidget *page, QWidget *holder)
    : QObject(page)
    , m_page(page)
    , m_holder(holder)
{
    page->installEventFilter(this);
}

void DeferredLayout::defer(QWidget *page)
{
    if (!page->layout())
        return;
    auto *holder = new QWidget(page);
    holder->hide();
    // Taking the layout over moves the widgets it manages to the holder.
    holder->setLayout(page->layout());
    new DeferredLayout(page, holder);
}

bool DeferredLayout::eventFilter(QObject *watched, QEvent *event)
{
    // Before the page paints for the first time.
    if (watched == m_page && event->type() == QEvent::Show)
        restore();
    return false;
}

void DeferredLayout::restore()
{
    m_page->removeEventFilter(this);
    m_page->setLayout(m_holder->layout());
    // Moved back, the widgets are hidden; those nobody hid on purpose are shown again.
    const QList<QWidget *> children = m_page->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (child != m_holder && !child->testAttribute(Qt::WA_WState_ExplicitShowHide))
            child->show();
    }
    delete m_holder;
    // A layout that never ran asks for no layout pass of its own.
    m_page->layout()->activate();
    deleteLater();
}
