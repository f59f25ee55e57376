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
};

// Runs `build` once, when `page` is first shown and before it paints: a page
// of the window's own form gets its content then.
class FirstShow : public QObject
{
    Q_OBJECT

public:
    static void call(QWidget *page, std::function<void()> build);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    FirstShow(QWidget *page, std::function<void()> build);

    std::function<void()> m_build;
};
