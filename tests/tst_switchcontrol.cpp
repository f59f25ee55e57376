#include "dialogs/switchcontrol.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {
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

Q_DECLARE_METATYPE(Qt::MouseButton)

class tst_SwitchControl : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_host = new Host;
        m_switch = new SwitchControl(m_host);
        m_switch->resize(m_switch->sizeHint());
        m_host->resize(m_switch->sizeHint());
        m_host->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_host));
    }
    void cleanup() { delete m_host; }

    void release_togglesOnlyForLeftButtonOnEnabledSwitch_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("toggles");

        QTest::newRow("left button on enabled switch") << Qt::LeftButton << true << true;
        QTest::newRow("right button") << Qt::RightButton << true << false;
        QTest::newRow("left button on disabled switch") << Qt::LeftButton << false << false;
    }

    void release_togglesOnlyForLeftButtonOnEnabledSwitch()
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
        QCOMPARE(m_switch->findChild<QTimer *>()->isActive(), toggles); // the slide starts
    }

    void rendering_showsTrackAtItsOpacityAndAnOpaqueThumb_data()
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
        QTest::newRow("disabled while on keeps the background track")
            << false << true << false << QColor(Qt::black) << 0.26 << grey;
        QTest::newRow("custom checked colour when on") << true << true << true << Green << 0.6 << Green;
        QTest::newRow("custom background and disabled colour") << false << false << true << Red << 0.26 << Violet;
    }

    void rendering_showsTrackAtItsOpacityAndAnOpaqueThumb()
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
        QSignalSpy slid(m_switch, &SwitchControl::toggledAfter); // at rest at its end
        m_switch->setChecked(checked);
        QVERIFY(slid.wait(5000));

        QImage image(m_switch->size(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        m_switch->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        // The thumb is a disc as tall as the widget centred at (11, 11) or (25, 11);
        // 7 px up and right of the centre is still inside it.
        const int centre = checked ? 25 : 11;
        QString wrong = mismatch(image.pixelColor(checked ? 8 : 30, 11), track, opacity);
        QVERIFY2(wrong.isEmpty(), qPrintable("track: " + wrong));
        for (const QPoint &at : {QPoint(centre, 11), QPoint(centre + 7, 4)}) {
            wrong = mismatch(image.pixelColor(at), thumb);
            QVERIFY2(wrong.isEmpty(), qPrintable(QString("thumb at %1,%2: %3").arg(at.x()).arg(at.y()).arg(wrong)));
        }
    }

private:
    Host *m_host = nullptr;
    SwitchControl *m_switch = nullptr;
};

QTEST_MAIN(tst_SwitchControl)
#include "tst_switchcontrol.moc"
