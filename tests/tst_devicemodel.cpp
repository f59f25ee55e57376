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

// The names of the model's signals that fired while `action` ran.
QStringList changesDuring(DeviceModel &model, const std::function<void()> &action)
{
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    const QMetaObject &meta = DeviceModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
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
