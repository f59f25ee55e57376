#pragma once

#include <QWidget>

#include <functional>

// A tab page whose content is built the first time the page is shown, so that
// the window opens without waiting for pages the operator may never visit.
class LazyPage : public QWidget
{
    Q_OBJECT

public:
    using Factory = std::function<QWidget *(QWidget *parent)>;

    explicit LazyPage(Factory factory, QWidget *parent = nullptr);

    // The page's content, built now if it was not yet.
    QWidget *content();

protected:
    void showEvent(QShowEvent *event) override;

private:
    Factory m_factory;
    QWidget *m_content = nullptr;
};

// Moves a page's layout, and with it everything the page holds, into a hidden
// holder until the page is first shown: until then working out the window's
// layout does not measure the page's contents (its labels' text above all).
// The page itself stays where it is, so its tab keeps its place and title.
class DeferredLayout : public QObject
{
    Q_OBJECT

public:
    static void defer(QWidget *page);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    DeferredLayout(QWidget *page, QWidget *holder);
    void restore();

    QWidget *m_page;
    QWidget *m_holder;
};
