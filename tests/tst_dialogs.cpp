#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/edidsettingdilog.h"
#include "dialogs/graphicstestdialog.h"
#include "dialogs/msgdlg.h"
#include "dialogs/resolutionsetdialog.h"
#include "dialogs/volumnsettingdialog.h"
#include "fakedevice.h"
#include "mainwindow/sigmanager.h"
#include "resources/guiresources.h"
#include "sim/simserver.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

// The per-port setting dialogs, over a real link to an in-process device:
// what each control puts on the wire.
class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void patternButtons_sendTheirNumber_data();
    void patternButtons_sendTheirNumber();
    void resolutionEntries_sendTheirTextInOrder_data();
    void resolutionEntries_sendTheirTextInOrder();
    void resolutionDialog_startsAtTheDevicesValue_data();
    void resolutionDialog_startsAtTheDevicesValue();
    void edid_listsOutputsByModelAndCopiesByPosition_data();
    void edid_listsOutputsByModelAndCopiesByPosition();
    void edid_emptyFileShowsTheMessageAndSendsNothing();
    void edid_uploadReachesTheDeviceIntact();
    void volume_sendsOnReleaseOnlyAndFollowsTheDevice();

private:
    // What the dialogs sent since the last call; a version query sent last
    // marks the end, so "nothing" is known without waiting for a time-out.
    QByteArray sentSoFar();

    FakeDevice m_device{QHostAddress("127.0.0.51")};
    MessageDistance m_link;
    DeviceRecord m_record;
    DeviceModel m_model{&m_record};
};

void tst_Dialogs::initTestCase()
{
    initGuiResources();
    // As the main window wires it: the dialogs follow the hub.
    connect(&m_model, &DeviceModel::volumesChanged, SigManager::instance(), &SigManager::Sig_UpdateVolumes);
    QVERIFY(m_device.isListening());
    QSignalSpy connected(&m_link, &MessageDistance::connectSuccessFulSig);
    m_link.connectToDevice(m_device.host(), m_device.port());
    QVERIFY(connected.wait());
}

void tst_Dialogs::init()
{
    m_record.setModelFlag(1);
    sentSoFar();
}

QByteArray tst_Dialogs::sentSoFar()
{
    const QByteArray fence = "{param=version}";
    m_link.sendVersionQuery();
    if (!QTest::qWaitFor([&] { return m_device.received().endsWith(fence); }, 3000))
        return "<no fence>";
    QByteArray sent = m_device.takeReceived();
    sent.chop(fence.size());
    return sent;
}

void tst_Dialogs::patternButtons_sendTheirNumber_data()
{
    QTest::addColumn<bool>("isInput");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("pattern");
    const char *const buttons[] = {"Through", "RGB_bars", "16levelsofgray", "32levelsofgray", "64levelsofgray",
                                   "RedGrid", "GreenGrid", "BlueGrid", "WhiteGrid", "HorizontalScrollBar",
                                   "VerticalScrollBar", "SolidColor"};
    for (bool isInput : {true, false}) {
        for (int n = 0; n < 12; ++n) {
            QTest::addRow("%s %s", isInput ? "input" : "output", buttons[n])
                << isInput << QString("radioButton_") + buttons[n] << n;
        }
    }
}

void tst_Dialogs::patternButtons_sendTheirNumber()
{
    QFETCH(bool, isInput);
    QFETCH(QString, button);
    QFETCH(int, pattern);

    GraphicsTestDialog dialog(3, isInput, &m_link);
    QCOMPARE(dialog.titleText(), isInput ? QString("Input Graphics test") : QString("OutPut Graphics test"));
    auto *radio = dialog.findChild<QRadioButton *>(button);
    QVERIFY(radio);
    radio->click();
    const QString command = QString(isInput ? "{param=In_Pattern3/%1}" : "{param=Out_Pattern3/%1}").arg(pattern);
    QCOMPARE(sentSoFar(), command.toLatin1());

    // Unchecking sends nothing, except Pure Color, which sends on every click.
    QVERIFY(QMetaObject::invokeMethod(&dialog, qPrintable("on_" + button + "_clicked"), Q_ARG(bool, false))
            || QMetaObject::invokeMethod(&dialog, qPrintable("on_" + button + "_clicked")));
    QCOMPARE(sentSoFar(), pattern == 11 ? command.toLatin1() : QByteArray());
}

void tst_Dialogs::resolutionEntries_sendTheirTextInOrder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    const char *const order[] = {
        "800x600x60Hz",   "1024x768x60Hz",  "1280x720x50Hz",  "1280x720x60Hz",  "1280x768x60Hz",  "1280x800x60Hz",
        "1280x960x60Hz",  "1280x1024x60Hz", "1360x768x60Hz",  "1366x768x60Hz",  "1440x900x60Hz",  "1600x900x60Hz",
        "1600x1200x60Hz", "1920x540x50Hz",  "1920x540x60Hz",  "1920x1080x30Hz", "1920x1080x50Hz", "1920x1080x60Hz",
        "1920x1200x60Hz", "3840x2160x30Hz", "4096x2160x30Hz", "3840x2160x60Hz", "4096x2160x60Hz"};
    for (int i = 0; i < 23; ++i)
        QTest::newRow(order[i]) << i << order[i];
}

void tst_Dialogs::resolutionEntries_sendTheirTextInOrder()
{
    QFETCH(int, index);
    QFETCH(QString, text);

    ResolutionSetDialog dialog(12, 0, &m_model, &m_link);
    QComboBox *combo = dialog.comboBox();
    QCOMPARE(combo->count(), 23);
    QCOMPARE(combo->itemText(index), text);
    emit combo->activated(index);
    QCOMPARE(sentSoFar(), QString("{param=Port12/%1!}").arg(text).toLatin1());
}

void tst_Dialogs::resolutionDialog_startsAtTheDevicesValue_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("input");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shown");
    QTest::newRow("output") << 5 << 0 << "[OutChannel5]" << "3840x2160x30Hz";
    QTest::newRow("input without signal") << -1 << 3 << "[InChannel3]" << "noinput";
    QTest::newRow("input with signal") << -1 << 2 << "[InChannel2]" << "1280x720x50Hz";
}

void tst_Dialogs::resolutionDialog_startsAtTheDevicesValue()
{
    QFETCH(int, port);
    QFETCH(int, input);
    QFETCH(QString, title);
    QFETCH(QString, shown);
    const bool choosable = port != -1;

    m_record.setOutputResolutionMap({{5, "3840x2160x30Hz"}, {6, "800x600x60Hz"}});
    m_record.setInputResolutionMap({{2, "1280x720x50Hz"}, {3, "noinput"}});
    ResolutionSetDialog dialog(port, input, &m_model, &m_link);
    QCOMPARE(dialog.titleText(), title);
    QCOMPARE(dialog.comboBox()->currentText(), shown);
    QCOMPARE(dialog.comboBox()->isEnabled(), choosable);
    if (choosable) {
        // Choosing the entry that is already current still sends it.
        emit dialog.comboBox()->activated(dialog.comboBox()->currentIndex());
        QCOMPARE(sentSoFar(), QByteArray("{param=Port5/3840x2160x30Hz!}"));
    }
    QTest::mouseClick(dialog.findChild<QPushButton *>("btnApply"), Qt::LeftButton);
    QCOMPARE(dialog.result(), 1);
    QCOMPARE(sentSoFar(), QByteArray());
}

void tst_Dialogs::edid_listsOutputsByModelAndCopiesByPosition_data()
{
    QTest::addColumn<int>("modelFlag");
    QTest::addColumn<int>("entries");
    QTest::newRow("ORXM100") << 0 << 8;
    QTest::newRow("ORXM200") << 1 << 9;
}

void tst_Dialogs::edid_listsOutputsByModelAndCopiesByPosition()
{
    QFETCH(int, modelFlag);
    QFETCH(int, entries);

    m_record.setModelFlag(modelFlag);
    EdidSettingDilog dialog(2, &m_model, &m_link);
    auto *outputs = dialog.findChild<QComboBox *>();
    QCOMPARE(outputs->count(), entries);
    QCOMPARE(outputs->itemText(entries - 1), QString("OutPut Port %1").arg(entries));
    outputs->setCurrentIndex(entries - 1);
    QTest::mouseClick(dialog.findChild<QPushButton *>("btnCopy"), Qt::LeftButton);
    QCOMPARE(sentSoFar(), QString("{param=Copy_EDID2/%1}").arg(entries).toLatin1());
}

void tst_Dialogs::edid_emptyFileShowsTheMessageAndSendsNothing()
{
    QTemporaryDir dir;
    QFile empty(dir.filePath("empty.bin"));
    QVERIFY(empty.open(QIODevice::WriteOnly));
    empty.close();

    EdidSettingDilog dialog(4, &m_model, &m_link);
    auto *path = dialog.findChild<QLineEdit *>();
    auto *upload = dialog.findChild<QPushButton *>("UploadBtn");
    // No path, or a file that is not there: nothing at all happens.
    for (const QString &missing : {QString(), dir.filePath("missing.bin")}) {
        path->setText(missing);
        QTest::mouseClick(upload, Qt::LeftButton);
        QVERIFY(!QApplication::activeModalWidget());
    }

    QString shown;
    QTimer::singleShot(0, this, [&] {
        auto *message = qobject_cast<MsgDlg *>(QApplication::activeModalWidget());
        QVERIFY(message);
        shown = message->text();
        message->done(1);
    });
    path->setText(empty.fileName());
    QTest::mouseClick(upload, Qt::LeftButton);
    QCOMPARE(shown, QString("File is empty"));
    QCOMPARE(sentSoFar(), QByteArray());
    QCOMPARE(m_link.pendingUploads(), 0);
}

void tst_Dialogs::edid_uploadReachesTheDeviceIntact()
{
    // The emulator's own file port paces the transfer as the device does.
    SimOptions options;
    options.host = QHostAddress("127.0.0.52");
    options.port = 0;
    SimServer device(options);
    QVERIFY2(device.listen(), qPrintable(device.errorString()));
    MessageDistance link;
    QSignalSpy connected(&link, &MessageDistance::connectSuccessFulSig);
    link.connectToDevice("127.0.0.52", device.commandPort());
    QVERIFY(connected.wait());

    QByteArray edid;
    for (int i = 0; i < 1300; ++i)
        edid += char(i * 7 % 256);  // every byte value, more than two pieces
    QTemporaryDir dir;
    QFile file(dir.filePath("monitor.bin"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(edid);
    file.close();

    EdidSettingDilog dialog(2, &m_model, &link);
    dialog.findChild<QLineEdit *>()->setText(file.fileName());
    QTest::mouseClick(dialog.findChild<QPushButton *>("UploadBtn"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(device.device().inputEdid(2), edid, 10000);
}

void tst_Dialogs::volume_sendsOnReleaseOnlyAndFollowsTheDevice()
{
    m_record.setVolumeMap({{4, 30}});
    VolumnSettingDialog dialog(4, &m_model, &m_link);
    // Opening asks the device for every volume.
    QCOMPARE(sentSoFar(), QByteArray("{param=Get_Volume}"));
    auto *slider = dialog.findChild<QSlider *>("volumnSplider");
    auto *label = dialog.findChild<QLabel *>("valueLabel");
    QCOMPARE(slider->value(), 30);
    QCOMPARE(slider->maximum(), 100);

    // Dragging moves the value; only the release sends it.
    slider->setSliderDown(true);
    slider->setValue(72);
    QCOMPARE(sentSoFar(), QByteArray());
    slider->setSliderDown(false);
    QCOMPARE(sentSoFar(), QByteArray("{param=Volume4/72}"));
    QCOMPARE(label->text(), QString("72"));

    // A device report moves the slider and sends nothing back.
    m_model.apply(ReplySignal::Volume, QJsonObject{{"Volume4", 15}, {"Volume5", 90}});
    QCOMPARE(slider->value(), 15);
    QCOMPARE(label->text(), QString("15"));
    QCOMPARE(sentSoFar(), QByteArray());
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
