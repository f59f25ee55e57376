#include "dialogs/switchcontrol.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {
enum Action { Click, SetOn, SetOff };

const QColor Red(200, 40, 40), Green(40, 160, 60), Violet(90, 90, 200);

// Parent that counts the presses its switch lets through.
class Host : public QWidget
{
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        ++presses;
        QWidget::mousePressEvent(event);
    }
};

// Empty when `actual` is within 2 per channel of `colour` drawn at `opacity` over white.
QString mismatch(const QColor &actual, const QColor &colour, qreal opacity = 1.0)
{
    const auto near = [&](int got, int top) { return qAbs(got - (top * opacity + 255 * (1 - opacity))) <= 2; };
    if (near(actual.red(), colour.red()) && near(actual.green(), colour.green()) && near(actual.blue(), colour.blue()))
        return {};
    return QString("got %1 for %2 at %3").arg(actual.name(), colour.name()).arg(opacity);
}
} // namespace

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Qt::MouseButton)

class tst_SwitchControl : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newSwitch_isOffAt38x22WithPointingHand();
    void release_togglesOnlyForLeftButtonOnEnabledSwitch_data();
    void release_togglesOnlyForLeftButtonOnEnabledSwitch();
    void rendering_showsTrackAtItsOpacityAndAnOpaqueThumb_data();
    void rendering_showsTrackAtItsOpacityAndAnOpaqueThumb();

private:
    void settle(bool checked);

    Host *m_host = nullptr;
    SwitchControl *m_switch = nullptr;
    QTimer *m_timer = nullptr;
};

void tst_SwitchControl::init()
{
    m_host = new Host;
    m_switch = new SwitchControl(m_host);
    m_switch->resize(m_switch->sizeHint());
    m_host->resize(m_switch->sizeHint());
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host));
    m_timer = m_switch->findChild<QTimer *>();
    QVERIFY(m_timer);
}

void tst_SwitchControl::cleanup()
{
    delete m_host;
}

// Brings the switch to rest at the given end.
void tst_SwitchControl::settle(bool checked)
{
    QSignalSpy after(m_switch, &SwitchControl::toggledAfter);
    m_switch->setChecked(checked);
    QVERIFY(after.wait(5000));
}

void tst_SwitchControl::newSwitch_isOffAt38x22WithPointingHand()
{
    QVERIFY(!m_switch->isChecked());
    QCOMPARE(m_switch->sizeHint(), QSize(38, 22));
    QCOMPARE(m_switch->minimumSizeHint(), QSize(38, 22));
    QCOMPARE(m_switch->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(m_switch->thumbX(), 8.0);
}

void tst_SwitchControl::release_togglesOnlyForLeftButtonOnEnabledSwitch_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("toggles");

    QTest::newRow("left button on enabled switch") << Qt::LeftButton << true << true;
    QTest::newRow("right button") << Qt::RightButton << true << false;
    QTest::newRow("middle button") << Qt::MiddleButton << true << false;
    QTest::newRow("left button on disabled switch") << Qt::LeftButton << false << false;
}

void tst_SwitchControl::release_togglesOnlyForLeftButtonOnEnabledSwitch()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(bool, enabled);
    QFETCH(bool, toggles);
    m_switch->setEnabled(enabled);
    QSignalSpy toggled(m_switch, &SwitchControl::toggled);

    QTest::mousePress(m_switch, button);
    QVERIFY(toggled.isEmpty());
    // A press the switch takes must not reach the parent; any other does.
    QCOMPARE(m_host->presses, toggles ? 0 : 1);

    QTest::mouseRelease(m_switch, button);
    QCOMPARE(m_switch->isChecked(), toggles);
    QCOMPARE(toggled.count(), toggles ? 1 : 0);
    QCOMPARE(m_timer->isActive(), toggles);
}

void tst_SwitchControl::rendering_showsTrackAtItsOpacityAndAnOpaqueThumb_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("customColours"); // background Red, checked Green, disabled Violet
    QTest::addColumn<QColor>("track");
    QTest::addColumn<qreal>("opacity");
    QTest::addColumn<QColor>("thumb");

    const QColor blue(15, 115, 168), grey(190, 190, 190);
    QTest::newRow("off") << true << false << false << QColor(Qt::black) << 0.8 << QColor(Qt::white);
    QTest::newRow("on") << true << true << false << blue << 0.6 << blue;
    QTest::newRow("disabled") << false << false << false << QColor(Qt::black) << 0.26 << grey;
    QTest::newRow("disabled while on keeps the background track")
        << false << true << false << QColor(Qt::black) << 0.26 << grey;
    QTest::newRow("custom background when off") << true << false << true << Red << 0.8 << QColor(Qt::white);
    QTest::newRow("custom checked colour when on") << true << true << true << Green << 0.6 << Green;
    QTest::newRow("custom disabled colour") << false << false << true << Red << 0.26 << Violet;
}

void tst_SwitchControl::rendering_showsTrackAtItsOpacityAndAnOpaqueThumb()
{
    QFETCH(bool, enabled);
    QFETCH(bool, checked);
    QFETCH(bool, customColours);
    QFETCH(QColor, track);
    QFETCH(qreal, opacity);
    QFETCH(QColor, thumb);
    if (customColours) {
        m_switch->setBackgroundColor(Red);
        m_switch->setCheckedColor(Green);
        m_switch->setDisabledColor(Violet);
    }
    m_switch->setEnabled(enabled);
    settle(checked);

    QImage image(m_switch->size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    m_switch->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);

    // The thumb is a disc as tall as the widget with its corner at (x - 8, 0),
    // centred at (11, 11) or (25, 11); 7 px up and right of the centre is still
    // thumb only for that disc.
    const int centre = checked ? 25 : 11;
    QString wrong = mismatch(image.pixelColor(checked ? 8 : 30, 11), track, opacity);
    QVERIFY2(wrong.isEmpty(), qPrintable("track: " + wrong));
    for (const QPoint &at : {QPoint(centre, 11), QPoint(centre + 7, 4)}) {
        wrong = mismatch(image.pixelColor(at), thumb);
        QVERIFY2(wrong.isEmpty(), qPrintable(QString("thumb at %1,%2: %3").arg(at.x()).arg(at.y()).arg(wrong)));
    }
}

QTEST_MAIN(tst_SwitchControl)
#include "tst_switchcontrol.moc"
