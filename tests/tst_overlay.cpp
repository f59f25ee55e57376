#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/bitmapconversion.h"
#include "dialogs/msgdlg.h"
#include "dialogs/titleorosddialog.h"
#include "fakedevice.h"
#include "resources/guiresources.h"
#include "sim/simserver.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {
// Rows of `image` (as stored, top first) that hold a white pixel, with their white count.
QList<int> whiteRows(const QImage &image)
{
    QList<int> rows;
    for (int y = 0; y < image.height(); ++y) {
        int white = 0;
        for (int x = 0; x < image.width(); ++x)
            white += qGray(image.pixel(x, y)) > 127;
        if (white)
            rows << white;
    }
    return rows;
}
} // namespace

// Captions and logos: the bitmap conversions, and what the dialog sends.
class tst_Overlay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void textBitmap_isWhiteOnBlackAndUpsideDown();
    void pictureBitmap_thresholdsKeepsSizeAndFlips();
    void controls_sendTheirCommand_data();
    void controls_sendTheirCommand();
    void stateReports_setControlsSilently_data();
    void stateReports_setControlsSilently();
    void uploads_refuseWhatTheDeviceCannotTake_data();
    void uploads_refuseWhatTheDeviceCannotTake();
    void uploads_reachTheEmulatorAsEncoded_data();
    void uploads_reachTheEmulatorAsEncoded();

private:
    QByteArray sentSoFar();
    // Runs `action`, which opens a message box; returns the box's text and closes it.
    QString messageFrom(const std::function<void()> &action);

    QTemporaryDir m_workDir;
    FakeDevice m_device{QHostAddress("127.0.0.53")};
    MessageDistance m_link;
    DeviceRecord m_record;
    DeviceModel m_model{&m_record};
};

void tst_Overlay::initTestCase()
{
    initGuiResources();
    // The conversions keep their working files relative to the working directory.
    QVERIFY(QDir::setCurrent(m_workDir.path()));
    QSignalSpy connected(&m_link, &MessageDistance::connectSuccessFulSig);
    m_link.connectToDevice(m_device.host(), m_device.port());
    QVERIFY(connected.wait());
    QTRY_VERIFY(m_link.isUploadConnected());
}

void tst_Overlay::init()
{
    sentSoFar();
}

QByteArray tst_Overlay::sentSoFar()
{
    const QByteArray fence = "{param=version}";
    m_link.sendVersionQuery();
    if (!QTest::qWaitFor([&] { return m_device.received().endsWith(fence); }, 3000))
        return "<no fence>";
    QByteArray sent = m_device.takeReceived();
    sent.chop(fence.size());
    return sent;
}

QString tst_Overlay::messageFrom(const std::function<void()> &action)
{
    QString text = "<no message>";
    QTimer::singleShot(0, this, [&text] {
        if (auto *box = qobject_cast<MsgDlg *>(QApplication::activeModalWidget())) {
            text = box->text();
            box->done(1);
        }
    });
    action();
    return text;
}

void tst_Overlay::textBitmap_isWhiteOnBlackAndUpsideDown()
{
    QFont font("Microsoft YaHei UI");
    font.setPointSize(35);
    const QString path = BitmapConversion::textToBitmap("A", font);
    QCOMPARE(path, QString("ConversionProcessing/CharacterLogo/CharImage.bmp"));
    const QImage stored(path);
    const QRect box = QFontMetrics(font).boundingRect(" A ");
    QCOMPARE(stored.size(), QSize(box.width() + 8, box.height() + 5));
    QCOMPARE(stored.depth(), 1);
    QCOMPARE(qGray(stored.pixel(0, 0)), 0);  // black ground
    // Upside down: the legs of the "A" come first, its apex last.
    const QList<int> rows = whiteRows(stored);
    QVERIFY(rows.size() > 10);
    QVERIFY2(rows.first() > rows.last(), "the glyph is not upside down");
    // What goes on the wire decodes to the same image.
    QCOMPARE(QImage::fromData(BitmapConversion::encodedBmp(path), "bmp").convertToFormat(QImage::Format_Mono),
             stored.convertToFormat(QImage::Format_Mono));
}

void tst_Overlay::pictureBitmap_thresholdsKeepsSizeAndFlips()
{
    // Top row: grey 0x7F then 0x80; every other row black; an odd size.
    QImage picture(37, 11, QImage::Format_RGB32);
    picture.fill(Qt::black);
    picture.setPixel(0, 0, qRgb(0x7F, 0x7F, 0x7F));
    picture.setPixel(1, 0, qRgb(0x80, 0x80, 0x80));
    const QString source = m_workDir.filePath("picture.png");
    QVERIFY(picture.save(source));

    const QImage stored(BitmapConversion::pictureToBitmap(source));
    QCOMPARE(stored.size(), QSize(37, 11));
    QCOMPARE(stored.depth(), 1);
    QCOMPARE(qGray(stored.pixel(0, 10)), 0);    // 0x7F is black, now in the last row
    QCOMPARE(qGray(stored.pixel(1, 10)), 255);  // 0x80 is white
    QCOMPARE(qGray(stored.pixel(1, 0)), 0);

    // A picture that cannot be loaded leaves an empty file, not the last picture.
    QCOMPARE(QFile(BitmapConversion::pictureToBitmap(m_workDir.filePath("missing.png"))).size(), 0);
}

void tst_Overlay::controls_sendTheirCommand_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("show on") << 3 << "IsShowCheck" << QByteArray("{param=Open}");
    QTest::newRow("background on") << 3 << "BgColorSwitch" << QByteArray("{param=Bg_Open}");
    QTest::newRow("speed on release") << 3 << "speedSplider" << QByteArray("{param=Speed7}");
    QTest::newRow("right") << 3 << "rightBtn" << QByteArray("{param=Right}");
    QTest::newRow("position, empty Y") << 3 << "xEdit" << QByteArray("{param=POS12/0}");
    QTest::newRow("text colour") << 3 << "ColorSetting" << QByteArray("{param=Font_Color10/20/30}");
    QTest::newRow("cancelled background colour") << 3 << "BgColorSetting" << QByteArray("{param=Bg_Color0/0/0}");
    QTest::newRow("erase logo") << 3 << "EraseBtn" << QByteArray("{param=EraseOSD}");
    QTest::newRow("erase caption") << -1 << "EraseBtn" << QByteArray("{param=EraseSubtitle}");
    QTest::newRow("empty text uploads nothing") << 3 << "uploadCharBtn" << QByteArray();
}

void tst_Overlay::controls_sendTheirCommand()
{
    QFETCH(int, target);
    QFETCH(QString, control);
    QFETCH(QByteArray, command);

    TitleOrOsdDialog dialog(target, &m_model, &m_link);
    QCOMPARE(dialog.findChild<QComboBox *>("fontSizeComboBox")->currentText(), target == -1 ? "200" : "35");
    auto *widget = dialog.findChild<QWidget *>(control);
    QVERIFY(widget);
    if (auto *slider = qobject_cast<QSlider *>(widget)) {
        slider->setSliderDown(true);
        slider->setValue(7);
        QCOMPARE(sentSoFar(), QByteArray());  // nothing while dragging
        slider->setSliderDown(false);
        QCOMPARE(dialog.findChild<QLabel *>("speedValueLabel")->text(), QString("7"));
    } else if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
        edit->setText("12");
        dialog.findChild<QLineEdit *>("yEdit")->clear();
        emit edit->editingFinished();
    } else if (control.endsWith("ColorSetting")) {
        const bool accept = control == "ColorSetting";
        QTimer::singleShot(0, this, [accept] {
            auto *picker = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            QVERIFY(picker);
            picker->setCurrentColor(QColor(10, 20, 30));
            accept ? picker->accept() : picker->reject();
        });
        qobject_cast<QAbstractButton *>(widget)->click();
    } else {
        qobject_cast<QAbstractButton *>(widget)->click();
    }
    QCOMPARE(sentSoFar(), command);
}

void tst_Overlay::stateReports_setControlsSilently_data()
{
    QTest::addColumn<bool>("osdSignal");
    QTest::addColumn<QJsonObject>("report");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("right");
    const QJsonObject caption{{"Switch", "true"}, {"Speed", 4}, {"Color", "1,2,3"}, {"Position_x", 5},
                              {"Position_y", 6}, {"Bg_switch", "true"}, {"Bg_Color", "7,8,9"}, {"Move_dir", "right"}};
    QJsonObject capitalLeft = caption;
    capitalLeft["Move_dir"] = "Left";
    QTest::newRow("caption report") << false << caption << true << true;
    QTest::newRow("\"Left\" leaves the direction") << false << capitalLeft << true << false;
    QTest::newRow("OSD report knows only \"switch\"") << true << caption << false << true;
    QTest::newRow("a JSON true is not \"true\"") << false << QJsonObject{{"Switch", true}} << false << false;
}

void tst_Overlay::stateReports_setControlsSilently()
{
    QFETCH(bool, osdSignal);
    QFETCH(QJsonObject, report);
    QFETCH(bool, shown);
    QFETCH(bool, right);

    TitleOrOsdDialog dialog(3, &m_model, &m_link);
    if (osdSignal)
        emit m_link.receiveOsdImfSig(3, report);
    else
        emit m_link.receiveTitleImfSig(report);
    QCOMPARE(dialog.findChild<QCheckBox *>("IsShowCheck")->isChecked(), shown);
    QCOMPARE(dialog.findChild<QPushButton *>("rightBtn")->isChecked(), right);
    if (report.size() > 1 && !osdSignal) {
        QCOMPARE(dialog.findChild<QSlider *>("speedSplider")->value(), 4);
        QCOMPARE(dialog.findChild<QLineEdit *>("yEdit")->text(), QString("6"));
        QVERIFY(dialog.findChild<QCheckBox *>("BgColorSwitch")->isChecked());
        QCOMPARE(dialog.findChild<QToolButton *>("ColorSetting")->styleSheet(), QString("background:rgb(1,2,3)"));
    }
    QCOMPARE(sentSoFar(), QByteArray());
}

void tst_Overlay::uploads_refuseWhatTheDeviceCannotTake_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QString>("message");
    const QString longText(40, QChar('W'));
    QTest::newRow("logo text over 4 KB") << 3 << longText << "" << QString::fromUtf8("台标字幕文件大小不能超过4K!");
    QTest::newRow("logo picture that cannot be loaded") << 3 << "" << "missing.png" << "File is empty";
    QTest::newRow("caption without the file connection") << -1 << "Hello" << "" << QString::fromUtf8("传输文件端口连接发生错误！");
}

void tst_Overlay::uploads_refuseWhatTheDeviceCannotTake()
{
    QFETCH(int, target);
    QFETCH(QString, text);
    QFETCH(QString, picture);
    QFETCH(QString, message);

    // The caption row needs a device without a file port.
    FakeDevice noFilePort(QHostAddress("127.0.0.54"), false);
    MessageDistance captionLink;
    MessageDistance *link = &m_link;
    if (target == -1) {
        QSignalSpy connected(&captionLink, &MessageDistance::connectSuccessFulSig);
        captionLink.connectToDevice(noFilePort.host(), noFilePort.port());
        QVERIFY(connected.wait());
        link = &captionLink;
    }
    TitleOrOsdDialog dialog(target, &m_model, link);
    dialog.findChild<QLineEdit *>("textEdit")->setText(text);
    dialog.findChild<QLineEdit *>("imagePathEdit")->setText(picture.isEmpty() ? QString() : m_workDir.filePath(picture));
    dialog.findChild<QComboBox *>("fontSizeComboBox")->setCurrentText("100");
    const char *button = text.isEmpty() ? "uploadImgBtn" : "uploadCharBtn";
    QCOMPARE(messageFrom([&] { dialog.findChild<QPushButton *>(button)->click(); }), message);
    QCOMPARE(sentSoFar(), QByteArray());
    QVERIFY(m_device.fileReceived().isEmpty());
    QCOMPARE(noFilePort.received(), QByteArray());
}

void tst_Overlay::uploads_reachTheEmulatorAsEncoded_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("savedAs");
    QTest::newRow("caption typed in the dialog") << -1 << "caption-2-0001.bmp";
    QTest::newRow("logo from a picture") << 4 << "osd-4-0001.bmp";
}

void tst_Overlay::uploads_reachTheEmulatorAsEncoded()
{
    QFETCH(int, target);
    QFETCH(QString, savedAs);

    QTemporaryDir saved;
    SimOptions options;
    options.host = QHostAddress("127.0.0.66");
    options.port = 0;
    options.saveUploadsDir = saved.path();
    SimServer device(options);
    QVERIFY2(device.listen(), qPrintable(device.errorString()));
    MessageDistance link;
    QSignalSpy connected(&link, &MessageDistance::connectSuccessFulSig);
    link.connectToDevice("127.0.0.66", device.commandPort());
    QVERIFY(connected.wait());
    QTRY_VERIFY(link.isUploadConnected());

    TitleOrOsdDialog dialog(target, &m_model, &link);
    QString bitmap;
    if (target == -1) {
        dialog.findChild<QComboBox *>("outputComboBox")->setCurrentIndex(1);
        dialog.findChild<QComboBox *>("fontSizeComboBox")->setCurrentText("100");
        dialog.findChild<QLineEdit *>("textEdit")->setText(QString::fromUtf8("Hi 你好"));
        dialog.findChild<QPushButton *>("uploadCharBtn")->click();
        bitmap = "ConversionProcessing/CharacterLogo/CharImage.bmp";
    } else {
        QImage picture(64, 20, QImage::Format_RGB32);
        picture.fill(Qt::white);
        const QString source = m_workDir.filePath("logo.png");
        QVERIFY(picture.save(source));
        dialog.findChild<QLineEdit *>("imagePathEdit")->setText(source);
        dialog.findChild<QPushButton *>("uploadImgBtn")->click();
        bitmap = "ConversionProcessing/Subtitle/SendlocalImage.bmp";
    }
    QFile file(saved.filePath(savedAs));
    QTRY_VERIFY_WITH_TIMEOUT(file.exists(), 10000);
    QTRY_VERIFY(!link.isAwaitingAck());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes, BitmapConversion::encodedBmp(bitmap));
    const QImage received = QImage::fromData(bytes, "bmp");
    QCOMPARE(received.depth(), 1);
    QCOMPARE(received.size(), QImage(bitmap).size());

    // A setting made in the dialog is what the device reports when it is opened again.
    target == -1 ? link.sendSubtitleQuery() : link.sendOsdQuery(target);
    dialog.findChild<QCheckBox *>("IsShowCheck")->click();
    dialog.findChild<QSlider *>("speedSplider")->setValue(9);
    emit dialog.findChild<QSlider *>("speedSplider")->sliderReleased();
    TitleOrOsdDialog reopened(target, &m_model, &link);
    QSignalSpy report(&link, &MessageDistance::receiveTitleImfSig);
    target == -1 ? link.sendSubtitleQuery() : link.sendOsdQuery(target);
    QVERIFY(report.wait());
    QVERIFY(reopened.findChild<QCheckBox *>("IsShowCheck")->isChecked());
    QCOMPARE(reopened.findChild<QSlider *>("speedSplider")->value(), 9);
}

QTEST_MAIN(tst_Overlay)
#include "tst_overlay.moc"
