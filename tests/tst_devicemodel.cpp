#include "device/devicemodel.h"

#include <QJsonDocument>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

Q_DECLARE_METATYPE(ReplySignal)

namespace {
QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

// The names of the model's change signals that fired while `action` ran.
QStringList changesDuring(DeviceModel &model, const std::function<void()> &action)
{
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    const QMetaObject &meta = DeviceModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal && meta.method(i).name().endsWith("Changed"))
            spies.push_back(std::make_unique<QSignalSpy>(&model, meta.method(i)));
    }
    action();
    QStringList names;
    for (const auto &spy : spies) {
        if (!spy->isEmpty())
            names << QString::fromLatin1(spy->signal()).section('(', 0, 0);
    }
    return names;
}
} // namespace

class tst_DeviceModel : public QObject
{
    Q_OBJECT

private slots:
    void reply_signalsItsChangeOnceAndNotWhenRepeated_data()
    {
        QTest::addColumn<ReplySignal>("kind");
        QTest::addColumn<QJsonObject>("reply");
        QTest::addColumn<QStringList>("changes");

        QTest::newRow("smaller model") << ReplySignal::Version << json(R"({"type":"ORXM100","FPGA":"V1","MCU":"V2"})")
                                       << QStringList{"modelChanged", "versionsChanged"};
        QTest::newRow("unknown model keeps the larger one") << ReplySignal::Version << json(R"({"type":"X","FPGA":"1"})")
                                                            << QStringList{"versionsChanged"};
        QTest::newRow("lower-case type is unknown") << ReplySignal::Version << json(R"({"type":"orxm100","FPGA":1.5})")
                                                    << QStringList{"versionsChanged"};
        QTest::newRow("video map with a wall") << ReplySignal::VideoMap << json(R"({"video1":3,"video2":4,"mode":2})")
                                               << QStringList{"videoMapChanged", "joinModeChanged"};
        QTest::newRow("video map, numbers as strings") << ReplySignal::VideoMap << json(R"({"video1":"4","mode":"5"})")
                                                       << QStringList{"videoMapChanged", "joinModeChanged"};
        QTest::newRow("audio map") << ReplySignal::AudioMap << json(R"({"audio101":5})") << QStringList{"audioMapChanged"};
        QTest::newRow("IR map") << ReplySignal::IrMap << json(R"({"IR2":7})") << QStringList{"irMapChanged"};
        QTest::newRow("input signals") << ReplySignal::InputState << json(R"({"input-3":"true","input-4":"false"})")
                                       << QStringList{"inputSignalsChanged"};
        QTest::newRow("input resolution") << ReplySignal::InResolution << json(R"({"in1":"noinput"})")
                                          << QStringList{"inputResolutionsChanged"};
        QTest::newRow("output resolution") << ReplySignal::OutResolution << json(R"({"out2":"1920x1080@60"})")
                                           << QStringList{"outputResolutionsChanged"};
        QTest::newRow("network") << ReplySignal::NetWork << json(R"({"ip":"10.0.0.5","mac":"aa"})") << QStringList{"networkChanged"};
        QTest::newRow("volumes") << ReplySignal::Volume << json(R"({"Volume1":40})") << QStringList{"volumesChanged"};
        QTest::newRow("no volumes: nothing changed") << ReplySignal::Volume << json("{}") << QStringList();
        QTest::newRow("caption") << ReplySignal::Title << json(R"({"switch":"on","Speed":3,"Move_dir":"right"})")
                                 << QStringList{"captionChanged"};
    }

    void reply_signalsItsChangeOnceAndNotWhenRepeated()
    {
        QFETCH(ReplySignal, kind);
        QFETCH(QJsonObject, reply);
        QFETCH(QStringList, changes);
        DeviceModel model;
        QCOMPARE(changesDuring(model, [&] { model.apply(kind, reply); }), changes);
        QCOMPARE(changesDuring(model, [&] { model.apply(kind, reply); }), QStringList());
    }

    void deviceValuesOutsideTheModel_areIgnored_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("reply"); // a video, audio or IR map
        QTest::addColumn<QString>("kept");  // output:input as the grids get them; each other entry is reported
        QTest::newRow("inputs 99, 4294967298, \"2.5\"") << "ORXM200" << R"({"video1":9,"video2":99,"video3":4294967298,"video4":"2.5"})" << "1:9";
        QTest::newRow("input 9 of eight") << "ORXM100" << R"({"video1":8,"video3":9})" << "1:8";
        QTest::newRow("HDMI audio output 110") << "ORXM200" << R"({"audio109":4,"audio110":4})" << "109:4";
        QTest::newRow("IR outputs 10, 99999999999") << "ORXM200" << R"({"IR9":0,"IR10":1,"IR99999999999":1})" << "9:0";
    }
    void deviceValuesOutsideTheModel_areIgnored()
    {
        QFETCH(QString, type);
        QFETCH(QString, reply);
        QFETCH(QString, kept);
        DeviceModel model;
        model.apply(ReplySignal::Version, QJsonObject{{"type", type}});
        for (int ignored = reply.count(':') - kept.count(':'); ignored > 0; --ignored)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("is not a port of this model, ignored"));
        const bool video = reply.contains("video"), audio = reply.contains("audio");
        model.apply(video ? ReplySignal::VideoMap : audio ? ReplySignal::AudioMap : ReplySignal::IrMap,
                    QJsonDocument::fromJson(reply.toUtf8()).object());
        const DeviceRecord &r = model.record();
        const QMap<int, int> map = video ? r.videoMap() : audio ? r.audioMap() : r.irMap();
        QStringList routes;
        for (auto it = map.begin(); it != map.end(); ++it)
            routes << QString("%1:%2").arg(it.key()).arg(it.value());
        QCOMPARE(routes.join(' '), kept);
    }

    void wallSwitch_routesEveryOutputOfTheLayoutOnce()
    {
        DeviceModel model;
        model.apply(ReplySignal::Version, json(R"({"type":"ORXM100"})"));
        model.recordJoinMode(6); // the whole 4x2 wall of the eight-output model
        QCOMPARE(changesDuring(model, [&] { model.recordSwitch(5, 1, DeviceModel::Wall); }), QStringList{"videoMapChanged"});
        QCOMPARE(model.record().videoMap().keys(), (QList<int>{1, 2, 3, 4, 5, 6, 7, 8}));
        QCOMPARE(model.record().videoMap().values().count(5), 8);
        // Audio waits for the device's map; the video route is already so.
        QCOMPARE(changesDuring(model, [&] {
                     model.recordSwitch(2, 9, DeviceModel::Audio);
                     model.recordSwitch(5, 3, DeviceModel::Video);
                 }),
                 QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_DeviceModel)
#include "tst_devicemodel.moc"
