// The setting dialogs and the overlay bitmaps, over a real link to an
// in-process device: what each control puts on the wire.
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "linkup.h"
#include "dialogs/bitmapconversion.h"
#include "dialogs/edidsettingdilog.h"
#include "dialogs/graphicstestdialog.h"
#include "dialogs/msgdlg.h"
#include "dialogs/resolutionsetdialog.h"
#include "dialogs/titleorosddialog.h"
#include "dialogs/volumnsettingdialog.h"
#include "fakedevice.h"
#include "mainwindow/sigmanager.h"
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
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {
// White pixels of each row of `image` (as stored, top first) that holds any.
QList<int> whiteRows(const QImage &image)
{
    QList<int> rows;
    for (int y = 0, white = 0; y < image.height(); ++y, white = 0) {
        for (int x = 0; x < image.width(); ++x)
            white += qGray(image.pixel(x, y)) > 127;
        if (white)
            rows << white;
    }
    return rows;
}

// The emulator in this process and a link to it: its own file port paces an upload as
// the device does, and every finished upload is saved into a folder it creates.
struct Emulator
{
    QTemporaryDir dir;
    SimServer server{[this] {
        SimOptions options;
        options.host = QHostAddress("127.0.0.52");
        options.port = 0;
        options.saveUploadsDir = dir.filePath("saved");
        return options;
    }()};
    MessageDistance link;
    bool start() { return server.listen() && connectLink(link, "127.0.0.52", server.commandPort()); }
};
} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initGuiResources();
        // The conversions keep their working files relative to the working directory.
        QVERIFY(QDir::setCurrent(m_workDir.path()));
        // As the main window wires it: the dialogs follow the hub.
        connect(&m_model, &DeviceModel::volumesChanged, SigManager::instance(), &SigManager::Sig_UpdateVolumes);
        QVERIFY(m_device.isListening() && connectLink(m_link, m_device.host(), m_device.port()));
    }

    void init()
    {
        m_record.setModelFlag(1);
        sentSoFar();
    }

    void patternButtons_sendTheirNumber_data()
    {
        QTest::addColumn<bool>("isInput");
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("pattern");
        const char *const buttons[] = {"Through", "RGB_bars", "16levelsofgray", "32levelsofgray", "64levelsofgray",
                                       "RedGrid", "GreenGrid", "BlueGrid", "WhiteGrid", "HorizontalScrollBar",
                                       "VerticalScrollBar", "SolidColor"};
        for (bool isInput : {true, false})
            for (int n = 0; n < 12; ++n)
                QTest::addRow("%s %s", isInput ? "input" : "output", buttons[n])
                        << isInput << QString("radioButton_") + buttons[n] << n;
    }
    void patternButtons_sendTheirNumber()
    {
        QFETCH(bool, isInput);
        QFETCH(QString, button);
        QFETCH(int, pattern);
        GraphicsTestDialog dialog(3, isInput, &m_link);
        QCOMPARE(dialog.titleText(), isInput ? QString("Input Graphics test") : QString("OutPut Graphics test"));
        auto *radio = dialog.findChild<QRadioButton *>(button);
        QVERIFY(radio);
        radio->click();
        const QByteArray command = (isInput ? "{param=In_Pattern3/" : "{param=Out_Pattern3/") + QByteArray::number(pattern) + '}';
        QCOMPARE(sentSoFar(), command);
        // Unchecking sends nothing, except Pure Color, which sends on every click.
        QVERIFY(QMetaObject::invokeMethod(&dialog, qPrintable("on_" + button + "_clicked"), Q_ARG(bool, false))
                || QMetaObject::invokeMethod(&dialog, qPrintable("on_" + button + "_clicked")));
        QCOMPARE(sentSoFar(), pattern == 11 ? command : QByteArray());
    }

    void resolutionEntries_sendTheirTextInOrder_data()
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
    void resolutionEntries_sendTheirTextInOrder()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        ResolutionSetDialog dialog(12, 0, &m_model, &m_link);
        QCOMPARE(dialog.comboBox()->count(), 23);
        QCOMPARE(dialog.comboBox()->itemText(index), text);
        emit dialog.comboBox()->activated(index);
        QCOMPARE(sentSoFar(), QString("{param=Port12/%1!}").arg(text).toLatin1());
    }

    void resolutionDialog_startsAtTheDevicesValue_data()
    {
        QTest::addColumn<int>("port"); // -1: an input's, which cannot be chosen
        QTest::addColumn<int>("input");
        QTest::addColumn<QString>("shown"); // titles: tst_mainwindow's menus
        QTest::newRow("output") << 5 << 0 << "3840x2160x30Hz";
        QTest::newRow("input without signal") << -1 << 3 << "noinput";
        QTest::newRow("input with signal") << -1 << 2 << "1280x720x50Hz";
    }
    void resolutionDialog_startsAtTheDevicesValue()
    {
        QFETCH(int, port);
        QFETCH(int, input);
        m_record.setOutputResolutionMap({{5, "3840x2160x30Hz"}, {6, "800x600x60Hz"}});
        m_record.setInputResolutionMap({{2, "1280x720x50Hz"}, {3, "noinput"}});
        ResolutionSetDialog dialog(port, input, &m_model, &m_link);
        QTEST(dialog.comboBox()->currentText(), "shown");
        QCOMPARE(dialog.comboBox()->isEnabled(), port != -1);
        if (port != -1) {
            // Choosing the entry that is already current still sends it.
            emit dialog.comboBox()->activated(dialog.comboBox()->currentIndex());
            QCOMPARE(sentSoFar(), QByteArray("{param=Port5/3840x2160x30Hz!}"));
        }
        QTest::mouseClick(dialog.findChild<QPushButton *>("btnApply"), Qt::LeftButton);
        QCOMPARE(dialog.result(), 1);
        QCOMPARE(sentSoFar(), QByteArray());
    }

    void edid_listsOutputsByModelAndCopiesByPosition_data()
    {
        QTest::addColumn<int>("modelFlag");
        QTest::addColumn<int>("entries");
        QTest::newRow("ORXM100") << 0 << 8;
        QTest::newRow("ORXM200") << 1 << 9;
    }
    void edid_listsOutputsByModelAndCopiesByPosition()
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

    void edid_emptyFileShowsTheMessageAndSendsNothing()
    {
        QFile empty(m_workDir.filePath("empty.bin"));
        QVERIFY(empty.open(QIODevice::WriteOnly));
        empty.close();
        EdidSettingDilog dialog(4, &m_model, &m_link);
        auto *path = dialog.findChild<QLineEdit *>();
        auto *upload = dialog.findChild<QPushButton *>("UploadBtn");
        // No path, or a file that is not there: nothing at all happens.
        for (const QString &missing : {QString(), m_workDir.filePath("missing.bin")}) {
            path->setText(missing);
            QTest::mouseClick(upload, Qt::LeftButton);
            QVERIFY(!QApplication::activeModalWidget());
        }
        path->setText(empty.fileName());
        QCOMPARE(messageFrom([&] { QTest::mouseClick(upload, Qt::LeftButton); }), QString("File is empty"));
        QCOMPARE(sentSoFar(), QByteArray());
        QCOMPARE(m_link.pendingUploads(), 0);
    }

    void edid_uploadReachesTheDeviceIntact()
    {
        Emulator sim;
        QVERIFY2(sim.start(), qPrintable(sim.server.errorString()));
        QByteArray edid;
        for (int i = 0; i < 1300; ++i)
            edid += char(i * 7 % 256); // every byte value, more than two pieces
        QFile file(sim.dir.filePath("monitor.bin"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(edid) == edid.size());
        file.close();
        EdidSettingDilog dialog(2, &m_model, &sim.link);
        dialog.findChild<QLineEdit *>()->setText(file.fileName());
        QTest::mouseClick(dialog.findChild<QPushButton *>("UploadBtn"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(sim.server.device().inputEdid(2), edid, 10000);
    }

    void volume_sendsOnReleaseOnlyAndFollowsTheDevice()
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

    void textBitmap_isWhiteOnBlackAndUpsideDown()
    {
        QFont font("Microsoft YaHei UI");
        font.setPointSize(35);
        const QString path = BitmapConversion::textToBitmap("A", font);
        QCOMPARE(path, QString("ConversionProcessing/CharacterLogo/CharImage.bmp"));
        const QImage stored(path);
        const QRect box = QFontMetrics(font).boundingRect(" A ");
        QCOMPARE(stored.size(), QSize(box.width() + 8, box.height() + 5));
        QCOMPARE(stored.depth(), 1);
        QCOMPARE(qGray(stored.pixel(0, 0)), 0); // black ground
        // Upside down: the legs of the "A" come first, its apex last.
        const QList<int> rows = whiteRows(stored);
        QVERIFY(rows.size() > 10);
        QVERIFY2(rows.first() > rows.last(), "the glyph is not upside down");
        // What goes on the wire decodes to the same image.
        QCOMPARE(QImage::fromData(BitmapConversion::encodedBmp(path), "bmp").convertToFormat(QImage::Format_Mono),
                 stored.convertToFormat(QImage::Format_Mono));
    }

    void pictureBitmap_thresholdsKeepsSizeAndFlips()
    {
        // Top row: grey 0x7F then 0x80; every other row black; an odd size.
        QImage picture(37, 11, QImage::Format_RGB32);
        picture.fill(Qt::black);
        picture.setPixel(0, 0, qRgb(0x7F, 0x7F, 0x7F));
        picture.setPixel(1, 0, qRgb(0x80, 0x80, 0x80));
        QVERIFY(picture.save(m_workDir.filePath("picture.png")));
        const QImage stored(BitmapConversion::pictureToBitmap(m_workDir.filePath("picture.png")));
        QCOMPARE(stored.size(), QSize(37, 11));
        QCOMPARE(stored.depth(), 1);
        QCOMPARE(qGray(stored.pixel(0, 10)), 0);   // 0x7F is black, now in the last row
        QCOMPARE(qGray(stored.pixel(1, 10)), 255); // 0x80 is white
        QCOMPARE(qGray(stored.pixel(1, 0)), 0);
        // A picture that cannot be loaded leaves an empty file, not the last picture.
        QCOMPARE(QFile(BitmapConversion::pictureToBitmap(m_workDir.filePath("missing.png"))).size(), 0);
    }

    void controls_sendTheirCommand_data()
    {
        QTest::addColumn<int>("target"); // -1: the caption, else a logo's output
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
    void controls_sendTheirCommand()
    {
        QFETCH(int, target);
        QFETCH(QString, control);
        TitleOrOsdDialog dialog(target, &m_model, &m_link);
        QCOMPARE(dialog.findChild<QComboBox *>("fontSizeComboBox")->currentText(), target == -1 ? "200" : "35");
        auto *widget = dialog.findChild<QWidget *>(control);
        QVERIFY(widget);
        if (auto *slider = qobject_cast<QSlider *>(widget)) {
            slider->setSliderDown(true);
            slider->setValue(7);
            QCOMPARE(sentSoFar(), QByteArray()); // nothing while dragging
            slider->setSliderDown(false);
            QCOMPARE(dialog.findChild<QLabel *>("speedValueLabel")->text(), QString("7"));
        } else if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
            edit->setText("12");
            dialog.findChild<QLineEdit *>("yEdit")->clear();
            emit edit->editingFinished();
        } else {
            if (control.endsWith("ColorSetting")) {
                QTimer::singleShot(0, this, [accept = control == "ColorSetting"] {
                    auto *picker = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
                    QVERIFY(picker);
                    picker->setCurrentColor(QColor(10, 20, 30));
                    accept ? picker->accept() : picker->reject();
                });
            }
            qobject_cast<QAbstractButton *>(widget)->click();
        }
        QTEST(sentSoFar(), "command");
    }

    void stateReports_setControlsSilently_data()
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
    void stateReports_setControlsSilently()
    {
        QFETCH(bool, osdSignal);
        QFETCH(QJsonObject, report);
        TitleOrOsdDialog dialog(3, &m_model, &m_link);
        osdSignal ? emit m_link.receiveOsdImfSig(3, report) : emit m_link.receiveTitleImfSig(report);
        QTEST(dialog.findChild<QCheckBox *>("IsShowCheck")->isChecked(), "shown");
        QTEST(dialog.findChild<QPushButton *>("rightBtn")->isChecked(), "right");
        if (report.size() > 1 && !osdSignal) {
            QCOMPARE(dialog.findChild<QSlider *>("speedSplider")->value(), 4);
            QCOMPARE(dialog.findChild<QLineEdit *>("yEdit")->text(), QString("6"));
            QVERIFY(dialog.findChild<QCheckBox *>("BgColorSwitch")->isChecked());
            QCOMPARE(dialog.findChild<QToolButton *>("ColorSetting")->styleSheet(), QString("background:rgb(1,2,3)"));
        }
        QCOMPARE(sentSoFar(), QByteArray());
    }

    void uploads_refuseWhatTheDeviceCannotTake_data()
    {
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("message");
        QTest::newRow("logo text over 4 KB") << 3 << QString(40, 'W') << "" << QString::fromUtf8("台标字幕文件大小不能超过4K!");
        QTest::newRow("logo picture that cannot be loaded") << 3 << "" << "missing.png" << "File is empty";
        QTest::newRow("caption without the file connection") << -1 << "Hello" << "" << QString::fromUtf8("传输文件端口连接发生错误！");
    }
    void uploads_refuseWhatTheDeviceCannotTake()
    {
        QFETCH(int, target);
        QFETCH(QString, text);
        QFETCH(QString, picture);
        // The caption row needs a device without a file port.
        FakeDevice noFilePort(QHostAddress("127.0.0.54"), false);
        MessageDistance captionLink;
        QVERIFY(target != -1 || connectLink(captionLink, noFilePort.host(), noFilePort.port(), false));
        TitleOrOsdDialog dialog(target, &m_model, target == -1 ? &captionLink : &m_link);
        dialog.findChild<QLineEdit *>("textEdit")->setText(text);
        dialog.findChild<QLineEdit *>("imagePathEdit")->setText(picture.isEmpty() ? QString() : m_workDir.filePath(picture));
        dialog.findChild<QComboBox *>("fontSizeComboBox")->setCurrentText("100");
        const char *button = text.isEmpty() ? "uploadImgBtn" : "uploadCharBtn";
        QTEST(messageFrom([&] { dialog.findChild<QPushButton *>(button)->click(); }), "message");
        QCOMPARE(sentSoFar(), QByteArray());
        QVERIFY(m_device.fileReceived().isEmpty());
        QCOMPARE(noFilePort.received(), QByteArray());
    }

    void uploads_reachTheEmulatorAsEncoded_data()
    {
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("savedAs");
        QTest::newRow("caption typed in the dialog") << -1 << "caption-2-0001.bmp";
        QTest::newRow("logo from a picture") << 4 << "osd-4-0001.bmp";
    }
    void uploads_reachTheEmulatorAsEncoded()
    {
        QFETCH(int, target);
        QFETCH(QString, savedAs);
        Emulator sim;
        QVERIFY2(sim.start(), qPrintable(sim.server.errorString()));
        TitleOrOsdDialog dialog(target, &m_model, &sim.link);
        QString bitmap = "ConversionProcessing/CharacterLogo/CharImage.bmp";
        if (target == -1) {
            dialog.findChild<QComboBox *>("outputComboBox")->setCurrentIndex(1);
            dialog.findChild<QComboBox *>("fontSizeComboBox")->setCurrentText("100");
            dialog.findChild<QLineEdit *>("textEdit")->setText(QString::fromUtf8("Hi 你好"));
            dialog.findChild<QPushButton *>("uploadCharBtn")->click();
        } else {
            QImage picture(64, 20, QImage::Format_RGB32);
            picture.fill(Qt::white);
            QVERIFY(picture.save(m_workDir.filePath("logo.png")));
            dialog.findChild<QLineEdit *>("imagePathEdit")->setText(m_workDir.filePath("logo.png"));
            dialog.findChild<QPushButton *>("uploadImgBtn")->click();
            bitmap = "ConversionProcessing/Subtitle/SendlocalImage.bmp";
        }
        QFile file(sim.dir.filePath("saved/" + savedAs));
        QTRY_VERIFY_WITH_TIMEOUT(file.exists(), 10000);
        QTRY_VERIFY(!sim.link.isAwaitingAck());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes, BitmapConversion::encodedBmp(bitmap));
        QCOMPARE(QImage::fromData(bytes, "bmp").depth(), 1);
        QCOMPARE(QImage::fromData(bytes, "bmp").size(), QImage(bitmap).size());

        // A setting made in the dialog is what the device reports when it is opened again.
        // The query selects the overlay the settings apply to; its answer is awaited, so
        // the reopened dialog cannot take it for the answer to the second query.
        auto query = [&] { target == -1 ? sim.link.sendSubtitleQuery() : sim.link.sendOsdQuery(target); };
        QSignalSpy report(&sim.link, &MessageDistance::receiveTitleImfSig);
        query();
        QVERIFY(report.wait());
        dialog.findChild<QCheckBox *>("IsShowCheck")->click();
        dialog.findChild<QSlider *>("speedSplider")->setValue(9);
        emit dialog.findChild<QSlider *>("speedSplider")->sliderReleased();
        TitleOrOsdDialog reopened(target, &m_model, &sim.link);
        query();
        // The spy hears the reply on the link's thread; the dialog's slot runs after it here.
        QTRY_VERIFY(reopened.findChild<QCheckBox *>("IsShowCheck")->isChecked());
        QTRY_COMPARE(reopened.findChild<QSlider *>("speedSplider")->value(), 9);
    }

private:
    // What the dialogs sent since the last call; a version query sent last
    // marks the end, so "nothing" is known without waiting for a time-out.
    QByteArray sentSoFar()
    {
        const QByteArray fence = "{param=version}";
        m_link.sendVersionQuery();
        if (!QTest::qWaitFor([&] { return m_device.received().endsWith(fence); }, 3000))
            return "<no fence>";
        return m_device.takeReceived().chopped(fence.size());
    }

    // Runs `action`; returns the text of the message box it opened, which is closed.
    QString messageFrom(const std::function<void()> &action)
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

    QTemporaryDir m_workDir;
    FakeDevice m_device{QHostAddress("127.0.0.51")};
    MessageDistance m_link;
    DeviceRecord m_record;
    DeviceModel m_model{&m_record};
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
