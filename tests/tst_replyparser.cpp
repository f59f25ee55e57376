#include "device/replyparser.h"
#include "referenceparser.h"
#include "logcapture.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

namespace {
struct Cut
{
    QByteArray frame;
    bool ok;
    QStringList signalNames;
    QJsonObject object;
};

QVector<Cut> parseAll(ReplyParser &parser)
{
    QVector<Cut> cuts;
    ParsedReply reply;
    while (parser.next(&reply)) {
        QStringList names;
        for (ReplySignal s : reply.signals_)
            names << replySignalName(s);
        cuts.append({reply.frame, reply.ok, names, reply.object});
    }
    return cuts;
}

QVector<Cut> parseChunks(const QList<QByteArray> &chunks)
{
    ReplyParser parser;
    QVector<Cut> cuts;
    for (const QByteArray &chunk : chunks) {
        parser.append(chunk);
        cuts += parseAll(parser);
    }
    return cuts;
}

QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

const QByteArray Ver = R"({"type":"ORXM200","FPGA":"V1.0.5","MCU":"V2.0.3"})";
const QByteArray Vid = R"({"video1":1,"video2":2,"video3":3,"mode":6})";
const QByteArray Aud = R"({"audio1":1,"audio2":2})";
const QByteArray Irm = R"({"IR1":1,"IR2":2})";
const QByteArray Inp = R"({"input-1":true,"input-2":false,"in1":1920x1080x60Hz,"in2":noinput})";
const QByteArray Out = R"({"out1":"1920x1080x60Hz","out2":"1280x720x60Hz"})";
const QByteArray Net = R"({"ip":"192.168.1.188","gateway":"192.168.1.1","subnet":"255.255.255.0","mac":"00:1a:2b:3c:4d:5e"})";
const QByteArray Vol = R"({"Volume1":50,"Volume2":0})";
const QByteArray Cap = R"({"Switch":true,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
} // namespace

Q_DECLARE_METATYPE(QList<QByteArray>)

class tst_ReplyParser : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void catalogueFrames_raiseTheirSignals_data();
    void catalogueFrames_raiseTheirSignals();
    void stream_isCutIntoFrames_data();
    void stream_isCutIntoFrames();
    void barewordFrame_getsEveryValueQuoted();
    void captionFrame_repairsItsFiveBareValues_data();
    void captionFrame_repairsItsFiveBareValues();
    void decodeFailure_isLoggedAndDropped();
    void chunking_neverChangesTheResult();
    void randomStreams_matchTheStraightforwardLoop();
    void junkWithoutBrace_isNotKept();
    void runawayPartialFrame_isDroppedWithOneLogLine();
};

void tst_ReplyParser::catalogueFrames_raiseTheirSignals_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QStringList>("signalNames");

    QTest::newRow("version") << Ver << QStringList{"receiveVersionSig"};
    QTest::newRow("video map") << Vid << QStringList{"receiveVideoMapSig"};
    QTest::newRow("audio map") << Aud << QStringList{"receiveAudioMapSig"};
    QTest::newRow("ir map") << Irm << QStringList{"receiveIrMapSig"};
    QTest::newRow("input info raises state and resolution")
            << Inp << QStringList{"receiveInputChannelStateSig", "receiveInChannelResolutionMapSig"};
    QTest::newRow("output resolution") << Out << QStringList{"receiveOutChannelResolutionMapSig"};
    QTest::newRow("network, values as written") << Net << QStringList{"receiveNetWorkImforamtionSig"};
    QTest::newRow("volume") << Vol << QStringList{"receiveVolumnImformationSig"};
    QTest::newRow("caption holds Bg_switch") << Cap << QStringList{"receiveTitleImfSig"};
    QTest::newRow("video and out together") << QByteArray(R"({"video1":2,"out1":"x"})")
                                            << QStringList{"receiveVideoMapSig", "receiveOutChannelResolutionMapSig"};
    QTest::newRow("every trigger, in table order")
            << QByteArray(R"({"switch":IR,"a":out,"b":audio,"c":input,"d":video,"e":type,"f":Volume,"g":ip})")
            << QStringList{"receiveNetWorkImforamtionSig", "receiveVolumnImformationSig", "receiveVersionSig",
                           "receiveVideoMapSig", "receiveInputChannelStateSig", "receiveAudioMapSig",
                           "receiveIrMapSig", "receiveInChannelResolutionMapSig",
                           "receiveOutChannelResolutionMapSig", "receiveTitleImfSig"};
    QTest::newRow("triggers are case-sensitive") << QByteArray(R"({"VIDEO":1,"Ip":2,"ir":3})") << QStringList{};
    QTest::newRow("empty object") << QByteArray("{}") << QStringList{};
}

void tst_ReplyParser::catalogueFrames_raiseTheirSignals()
{
    QFETCH(QByteArray, frame);
    QFETCH(QStringList, signalNames);

    const QVector<Cut> cuts = parseChunks({frame});
    QCOMPARE(cuts.size(), 1);
    QVERIFY2(cuts[0].ok, cuts[0].frame.constData());
    QCOMPARE(cuts[0].signalNames, signalNames);
}

void tst_ReplyParser::stream_isCutIntoFrames_data()
{
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<QList<QByteArray>>("frames");

    QTest::newRow("two in one read") << QList<QByteArray>{Vid + Aud} << QList<QByteArray>{Vid, Aud};
    QTest::newRow("split over two reads") << QList<QByteArray>{Ver.left(10), Ver.mid(10)} << QList<QByteArray>{Ver};
    QTest::newRow("split right before the brace")
            << QList<QByteArray>{Vol.chopped(1), "}"} << QList<QByteArray>{Vol};
    QTest::newRow("junk before and between")
            << QList<QByteArray>{"\r\x01garbage" + Ver + "zz\r\n" + Out} << QList<QByteArray>{Ver, Out};
    QTest::newRow("blanks and line feeds vanish, inside strings too")
            << QList<QByteArray>{"{ \"out1\" : \"Port Name\" }\n"} << QList<QByteArray>{R"({"out1":"PortName"})"};
    QTest::newRow("carriage returns stay")
            << QList<QByteArray>{"{\"mode\":\r6}"} << QList<QByteArray>{"{\"mode\":\r6}"};
    QTest::newRow("brace inside a value cuts the frame")
            << QList<QByteArray>{R"({"out1":"a}b"})" + Vol}
            << QList<QByteArray>{R"({"out1":"a})", Vol};
    QTest::newRow("closing brace without opening one waits for a frame")
            << QList<QByteArray>{"x}y", Ver} << QList<QByteArray>{Ver};
    QTest::newRow("second opening brace belongs to the frame")
            << QList<QByteArray>{R"({"a":{"b":1}})"} << QList<QByteArray>{R"({"a":{"b":1})"};
    QTest::newRow("partial frame waits") << QList<QByteArray>{Vid + "{\"audio1\":"} << QList<QByteArray>{Vid};
}

void tst_ReplyParser::stream_isCutIntoFrames()
{
    QFETCH(QList<QByteArray>, chunks);
    QFETCH(QList<QByteArray>, frames);

    QList<QByteArray> got;
    for (const Cut &cut : parseChunks(chunks))
        got << cut.frame;
    QCOMPARE(got, frames);
}

void tst_ReplyParser::barewordFrame_getsEveryValueQuoted()
{
    const QVector<Cut> cuts = parseChunks({Inp});
    QCOMPARE(cuts.size(), 1);
    QCOMPARE(cuts[0].frame,
             QByteArray(R"({"input-1":"true","input-2":"false","in1":"1920x1080x60Hz","in2":"noinput"})"));
    QCOMPARE(cuts[0].object, json(R"({"input-1":"true","input-2":"false","in1":"1920x1080x60Hz","in2":"noinput"})"));

    // A number in such a frame arrives as text.
    QCOMPARE(parseChunks({R"({"in3":7})"}).value(0).object, json(R"({"in3":"7"})"));
}

void tst_ReplyParser::captionFrame_repairsItsFiveBareValues_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QByteArray>("repaired");

    QTest::newRow("caption") << Cap
                             << QByteArray(R"({"Switch":"true","Speed":5,"Color":"255,255,255","Position_x":0,)"
                                           R"("Position_y":0,"Bg_switch":"false","Bg_Color":"0,0,0","Move_dir":"left"})");
    QTest::newRow("direction not last")
            << QByteArray(R"({"Switch":false,"Speed":1,"Color":1,2,3,"Position_x":4,"Position_y":5,"Bg_switch":true,)"
                          R"("Bg_Color":6,7,8,"Move_dir":right,"x":1})")
            << QByteArray(R"({"Switch":"false","Speed":1,"Color":"1,2,3","Position_x":4,"Position_y":5,)"
                          R"("Bg_switch":"true","Bg_Color":"6,7,8","Move_dir":"right","x":1})");
}

void tst_ReplyParser::captionFrame_repairsItsFiveBareValues()
{
    QFETCH(QByteArray, frame);
    QFETCH(QByteArray, repaired);

    const QVector<Cut> cuts = parseChunks({frame});
    QCOMPARE(cuts.size(), 1);
    QCOMPARE(cuts[0].frame, repaired);
    QVERIFY(cuts[0].ok);
    QVERIFY(capturedLog().filter("add char osdortitle imf:").size() == 1);
}

void tst_ReplyParser::decodeFailure_isLoggedAndDropped()
{
    // An already quoted value in a bare-word frame gets a second pair of quotes.
    const QVector<Cut> cuts = parseChunks({R"({"in1":"x"})" + Ver});
    QCOMPARE(cuts.size(), 2);
    QVERIFY(!cuts[0].ok);
    QVERIFY(cuts[0].signalNames.isEmpty());
    QVERIFY(cuts[1].ok);
    const QStringList errors = capturedLog().filter("json format parse error!raw data:");
    QCOMPARE(errors.size(), 1);
    QVERIFY(errors[0].contains(R"({\"in1\":\"\"x\"\"})"));
    QVERIFY(errors[0].contains("error:"));
}

void tst_ReplyParser::chunking_neverChangesTheResult()
{
    const QByteArray stream = "junk" + Ver + " \n" + Vid + Aud + "\r" + Irm + Inp + "}" + Out + Net + Vol + Cap
            + R"({"a":"}"})" + "{\"partial\":";
    QList<QByteArray> whole{stream};
    QList<QByteArray> bytes;
    for (char c : stream)
        bytes << QByteArray(1, c);
    QList<QByteArray> odd;
    for (int i = 0; i < stream.size(); i += 7)
        odd << stream.mid(i, 7);

    auto frames = [](const QVector<Cut> &cuts) {
        QList<QByteArray> list;
        for (const Cut &c : cuts)
            list << c.frame + (c.ok ? " ok " : " bad ") + c.signalNames.join(',').toLatin1();
        return list;
    };
    const QList<QByteArray> expected = frames(parseChunks(whole));
    QCOMPARE(expected.size(), 10);
    QCOMPARE(frames(parseChunks(bytes)), expected);
    QCOMPARE(frames(parseChunks(odd)), expected);
}

void tst_ReplyParser::randomStreams_matchTheStraightforwardLoop()
{
    // Streams built from the bytes that matter to the cutting and repairs.
    const QByteArray alphabet = "{}{}\" :,\n\r inoutIRipx0123Color";
    const QList<QByteArray> pieces{Ver, Vid, Aud, Irm, Inp, Out, Net, Vol, Cap};
    QRandomGenerator rng(20261122);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (int round = 0; round < 300; ++round) {
        QByteArray stream;
        while (stream.size() < 600) {
            if (rng.bounded(3) == 0)
                stream += pieces[rng.bounded(pieces.size())];
            else
                stream += alphabet[rng.bounded(alphabet.size())];
        }
        ReplyParser ours;
        ReferenceParser reference;
        int at = 0;
        while (at < stream.size()) {
            const int n = 1 + rng.bounded(40);
            ours.append(stream.mid(at, n));
            reference.append(stream.mid(at, n));
            at += n;
            ParsedReply a, b;
            for (;;) {
                const bool gotOurs = ours.next(&a);
                const bool gotReference = reference.next(&b);
                QCOMPARE(gotOurs, gotReference);
                if (!gotOurs)
                    break;
                QCOMPARE(a.frame, b.frame);
                QCOMPARE(a.ok, b.ok);
                QCOMPARE(a.object, b.object);
                QCOMPARE(a.signals_, b.signals_);
            }
        }
    }
}

void tst_ReplyParser::junkWithoutBrace_isNotKept()
{
    ReplyParser parser;
    const QByteArray junk(64 * 1024, 'x');
    for (int i = 0; i < 64; ++i)
        parser.append(junk + "}");
    QCOMPARE(parser.bufferedBytes(), 0);
    parser.append(Ver);
    QCOMPARE(parseAll(parser).size(), 1);
}

void tst_ReplyParser::runawayPartialFrame_isDroppedWithOneLogLine()
{
    ReplyParser parser;
    parser.append("{\"a\":\"");
    const QByteArray chunk(256 * 1024, 'y');
    for (int i = 0; i < 20 * 4; ++i) { // 20 MiB without a closing brace
        parser.append(chunk);
        QVERIFY(parser.bufferedBytes() <= ReplyParser::MaxPartialFrame + 1);
    }
    QCOMPARE(capturedLog().filter("receive buffer: dropped").size(), 1);
    parser.append("}" + Vol);
    const QVector<Cut> cuts = parseAll(parser);
    QCOMPARE(cuts.size(), 1);
    QCOMPARE(cuts[0].frame, Vol);
}

QTEST_GUILESS_MAIN(tst_ReplyParser)
#include "tst_replyparser.moc"
