#include "dialogs/switchcontrol.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>

namespace {
const QColor Red(200, 40, 40), Green(40, 160, 60), Violet(90, 90, 200), Blue(15, 115, 168), Grey(190, 190, 190),
    Black(Qt::black), White(Qt::white);

// Parent that counts the presses its switch lets through.
struct Host : QWidget {
    void mousePressEvent(QMouseEvent *event) override { ++presses; QWidget::mousePressEvent(event); }
    int presses = 0;
};

// True when `actual` is within 2 per channel of `colour` drawn at `opacity` over white.
bool near(const QColor &actual, const QColor &colour, qreal opacity = 1.0)
{
    const auto close = [&](int got, int top) { return qAbs(got - (top * opacity + 255 * (1 - opacity))) <= 2; };
    return close(actual.red(), colour.red()) && close(actual.green(), colour.green()) && close(actual.blue(), colour.blue());
}
} // namespace

Q_DECLARE_METATYPE(Qt::MouseButton)

class tst_SwitchControl : public QObject
{
    Q_OBJECT

private slots:
    void click_togglesOnlyWithLeftButtonWhenEnabled_andSettlesInItsColours_data()
    {
        QTest::addColumn<bool>("startOn");
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("custom"); // background Red, checked Green, disabled Violet
        QTest::addColumn<bool>("on");
        QTest::addColumn<QColor>("track");
        QTest::addColumn<qreal>("opacity");
        QTest::addColumn<QColor>("thumb");

        QTest::newRow("left click turns it on") << false << Qt::LeftButton << true << false << true << Blue << 0.6 << Blue;
        QTest::newRow("left click slides it back off") << true << Qt::LeftButton << true << false << false << Black << 0.8 << White;
        QTest::newRow("right click goes to the parent") << false << Qt::RightButton << true << false << false << Black << 0.8 << White;
        QTest::newRow("disabled while on") << true << Qt::LeftButton << false << false << true << Black << 0.26 << Grey;
        QTest::newRow("custom checked colour") << false << Qt::LeftButton << true << true << true << Green << 0.6 << Green;
        QTest::newRow("custom disabled colours") << false << Qt::LeftButton << false << true << false << Red << 0.26 << Violet;
    }

    void click_togglesOnlyWithLeftButtonWhenEnabled_andSettlesInItsColours()
    {
        QFETCH(bool, startOn); QFETCH(Qt::MouseButton, button); QFETCH(bool, enabled); QFETCH(bool, custom);
        QFETCH(bool, on); QFETCH(QColor, track); QFETCH(qreal, opacity); QFETCH(QColor, thumb);
        Host host;
        auto *control = new SwitchControl(&host);
        control->resize(control->sizeHint());
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        if (custom) {
            control->setBackgroundColor(Red);
            control->setCheckedColor(Green);
            control->setDisabledColor(Violet);
        }
        if (startOn) {
            control->setChecked(true);
            QVERIFY(QSignalSpy(control, &SwitchControl::toggledAfter).wait(5000));
        }
        QSignalSpy slid(control, &SwitchControl::toggledAfter); // the thumb at rest at its end
        control->setEnabled(enabled);
        QSignalSpy toggled(control, &SwitchControl::toggled);

        const bool toggles = on != startOn;
        QTest::mouseClick(control, button);
        QCOMPARE(host.presses, toggles ? 0 : 1); // a press the switch takes stays with it
        QCOMPARE(control->isChecked(), on);
        QCOMPARE(toggled.count(), int(toggles));
        if (toggles)
            QVERIFY(slid.wait(5000));

        QImage image(control->size(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        control->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        // The thumb is a disc as tall as the widget centred at (11, 11) or (25, 11);
        // 7 px up and right of the centre is still inside it.
        const int centre = on ? 25 : 11;
        QVERIFY2(near(image.pixelColor(on ? 8 : 30, 11), track, opacity), "track");
        QVERIFY2(near(image.pixelColor(centre, 11), thumb) && near(image.pixelColor(centre + 7, 4), thumb), "thumb");
    }
};

QTEST_MAIN(tst_SwitchControl)
#include "tst_switchcontrol.moc"
